// Interfaces of the system that are released once. Only the sources of rasterizer 1 on Windows include this.
#pragma once

#define DIRECT3D_VERSION 0x0700
#include <windows.h>

#include <d3d.h>
#include <ddraw.h>

#include <cstdint>

#include "rasterizer/d3d/records.h"

/// Holds one reference.
template <class Interface>
class ComHolder
{
public:
    ComHolder() = default;
    ComHolder(const ComHolder&) = delete;
    ComHolder& operator=(const ComHolder&) = delete;
    ~ComHolder() { release(); }

    Interface* get() const { return held; }
    Interface* operator->() const { return held; }
    explicit operator bool() const { return held != nullptr; }

    /// Where a call puts what it creates. Anything held before is released.
    Interface** receive()
    {
        release();
        return &held;
    }
    void** receiveUntyped() { return reinterpret_cast<void**>(receive()); }

    /// @return the references that others still hold
    ULONG release()
    {
        Interface* gone = held;
        held = nullptr;
        return gone ? gone->Release() : 0;
    }

private:
    Interface* held = nullptr;
};

/// A record of the libraries, cleared, with its size filled in.
template <class Record>
Record sized()
{
    Record record = {};
    record.dwSize = sizeof(Record);
    return record;
}

inline uint32_t code(HRESULT result)
{
    return static_cast<uint32_t>(result);
}

D3DPixelFormat fromSystem(const DDPIXELFORMAT& format);
DDPIXELFORMAT toSystem(const D3DPixelFormat& format);
D3DGuid fromSystem(const GUID& guid);
GUID toSystem(const D3DGuid& guid);
D3DMode modeOf(const DDSURFACEDESC2& description);
