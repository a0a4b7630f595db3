// The store behind the console: text, functions, variables and requests.
//
// The nine signatures of functions differ only in their types, so each operation is written once and applied
// to the nine pairs of arrays in their order.

#include "vornik/console/console.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "console/signatures.h"
#include "console/text.h"
#include "core/memorylasts.h"
#include "vornik/core/errorlog.h"

Console::Console()
    : varCount(0), funcCounts(), lastLoad(), varPointers(), varNames(), voidFloatFuncs(), voidFloatNames(),
      voidIntFuncs(), voidIntNames(), voidFuncs(), voidNames(), intFloatFuncs(), intFloatNames(),
      intIntFuncs(), intIntNames(), intFuncs(), intNames(), floatFloatFuncs(), floatFloatNames(),
      floatIntFuncs(), floatIntNames(), floatFuncs(), floatNames(), progressFunc(nullptr),
      text(static_cast<char*>(std::calloc(VRK_CONSOLE_TEXT, 1))), scene(nullptr), exitFlag(0), clearFlag(0)
{
    addText("Vornik Console v1.0\n");
}

Console::~Console()
{
    if (vrkError.console == this)
        vrkError.console = nullptr;
    std::free(text);
    std::for_each(varNames, varNames + varCount, std::free);
    forEachSignature(this, [](int count, auto* /*functions*/, char** names, auto... /*types*/)
                     { std::for_each(names, names + count, std::free); });
}

int Console::setScene(Scene* newScene)
{
    if (!newScene)
        return vrkPutToErrorLog("Scene used in functioncall is NULL!", 25);
    scene = newScene;
    return 0;
}

int Console::addProgressFunc(void (*f)(float))
{
    progressFunc = f;
    return 0;
}

// Names are kept in malloc blocks, which a host may replace. Without memory an entry has no name.
static char* keptName(const char* name)
{
    char* block = nullptr;
    whileMemoryLasts(
        [&]
        {
            const std::string raised = upperCase(name);
            block = static_cast<char*>(std::malloc(raised.size() + 1));
            if (block)
                std::memcpy(block, raised.c_str(), raised.size() + 1);
        });
    return block;
}

template <class Function>
static int keepFunction(int32_t* count, Function* functions, char** names, Function f, const char* name)
{
    if (*count >= VRK_CONSOLE_FUNCTIONS)
        return vrkPutToErrorLog("FuncList(n) is full (Console) create another Console or increase number of "
                                "maxFuncs(n)",
                                29);
    functions[*count] = f;
    names[*count] = keptName(name ? name : "");
    ++*count;
    return 0;
}

int Console::addFunc(void (*f)(float), const char* name)
{
    return keepFunction(&funcCounts[0], voidFloatFuncs, voidFloatNames, f, name);
}

int Console::addFunc(void (*f)(int), const char* name)
{
    return keepFunction(&funcCounts[1], voidIntFuncs, voidIntNames, f, name);
}

int Console::addFunc(void (*f)(), const char* name)
{
    return keepFunction(&funcCounts[2], voidFuncs, voidNames, f, name);
}

int Console::addFunc(int (*f)(float), const char* name)
{
    return keepFunction(&funcCounts[3], intFloatFuncs, intFloatNames, f, name);
}

int Console::addFunc(int (*f)(int), const char* name)
{
    return keepFunction(&funcCounts[4], intIntFuncs, intIntNames, f, name);
}

int Console::addFunc(int (*f)(), const char* name)
{
    return keepFunction(&funcCounts[5], intFuncs, intNames, f, name);
}

int Console::addFunc(float (*f)(float), const char* name)
{
    return keepFunction(&funcCounts[6], floatFloatFuncs, floatFloatNames, f, name);
}

int Console::addFunc(float (*f)(int), const char* name)
{
    return keepFunction(&funcCounts[7], floatIntFuncs, floatIntNames, f, name);
}

int Console::addFunc(float (*f)(), const char* name)
{
    return keepFunction(&funcCounts[8], floatFuncs, floatNames, f, name);
}

int Console::addVar(void* variable)
{
    return addVar(variable, nullptr);
}

int Console::addVar(void* variable, const char* name)
{
    if (varCount >= VRK_CONSOLE_VARIABLES)
        return vrkPutToErrorLog(
            "VarList is full (Console) create another Console or increase number of maxVars", 22);
    varPointers[varCount] = static_cast<float*>(variable);
    varNames[varCount] = keptName(name ? name : ("VAR" + std::to_string(varCount)).c_str());
    ++varCount;
    return 0;
}

int Console::getText(char* out)
{
    if (!out || !text)
        return 0;
    const size_t length = strnlen(text, VRK_CONSOLE_TEXT - 1);
    std::memcpy(out, text, length);
    out[length] = 0;
    text[0] = 0;
    return static_cast<int>(length);
}

int Console::addText(const char* added)
{
    if (!added || !text)
        return 0;
    const size_t length = strnlen(text, VRK_CONSOLE_TEXT);
    const size_t addedLength = std::strlen(added);
    if (length + addedLength < VRK_CONSOLE_TEXT)
        std::memmove(text + length, added, addedLength + 1);
    return 0;
}

static bool takeFlag(uint8_t* flag)
{
    const bool wasSet = *flag != 0;
    *flag = 0;
    return wasSet;
}

bool Console::exitRequest()
{
    return takeFlag(&exitFlag);
}

bool Console::clearRequest()
{
    return takeFlag(&clearFlag);
}

// Index of the entry of this name that was added last, or -1.
static int lastNamed(char* const* names, int count, const char* name)
{
    for (int i = count - 1; name && i >= 0; --i)
        if (names[i] && std::strcmp(names[i], name) == 0)
            return i;
    return -1;
}

template <class Result, class... Argument>
static float call(Result (*f)(Argument...), int intArg, float floatArg)
{
    const auto run = [&]() -> Result
    {
        if constexpr (sizeof...(Argument) == 0)
            return f();
        else if constexpr ((std::is_same_v<Argument, int> && ...))
            return f(intArg);
        else
            return f(floatArg);
    };
    if constexpr (std::is_void_v<Result>)
    {
        run();
        return 0.0f;
    }
    else
        return static_cast<float>(run());
}

float Console::evalEFunc(const char* name, int intArg, float floatArg)
{
    float result = 0.0f;
    bool found = false;
    forEachSignature(this,
                     [&](int count, auto* functions, char** names, auto... /*types*/)
                     {
                         const int index = found ? -1 : lastNamed(names, count, name);
                         if (index < 0)
                             return;
                         found = true;
                         result = functions[index] ? call(functions[index], intArg, floatArg) : -2.0f;
                     });
    return result;
}

int Console::setEVar(const char* name, float value)
{
    const int index = lastNamed(varNames, varCount, name);
    if (index < 0)
        return -1;
    if (!varPointers[index])
        return -2;
    *varPointers[index] = value;
    return truncatedInt(value);
}

float Console::getEVar(const char* name)
{
    const int index = lastNamed(varNames, varCount, name);
    if (index < 0)
        return -1.0f;
    return varPointers[index] ? *varPointers[index] : -2.0f;
}

int Console::command(const char* line)
{
    return parse(line);
}
