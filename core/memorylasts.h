// Where memory runs out the engine goes on with less, and nothing is thrown at a host.
#pragma once

#include <new>
#include <stdexcept>

/// Does the work. @return false if memory didn't suffice; what the work had done by then stands
template <class Work>
bool whileMemoryLasts(Work work)
{
    try
    {
        work();
        return true;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
    catch (const std::length_error&) // of containers, for sizes beyond any memory
    {
        return false;
    }
}
