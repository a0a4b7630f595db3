#ifndef VORNIK_CONSOLE_CONSOLE_H
#define VORNIK_CONSOLE_CONSOLE_H

// A console that draws nothing: text for the host to show, functions and variables of the host by name, and a
// small command language over both and over a Scene. The commands are in docs/console.md.
//
// A host makes a Console, hands it to initVornik as the sink of reports, calls setScene and registers what it
// wants to reach by name. Each frame it drains getText, feeds typed lines to command and polls exitRequest
// and clearRequest.
//
// Names are kept in upper case and typed lines are raised to it, so that case doesn't matter. Numbers are
// read and written with a decimal point, whatever the host's locale. Pointers are shown as the low 32 bits of
// the address, in hexadecimal. What doesn't fit the text buffer is dropped, piece by piece, without a report.

#include <stdint.h>
#include <stdio.h>

#include "vornik/core/string.h"
#include "vornik/export.h"

class Scene;

/// Capacities of a Console.
enum VRKConsoleCapacity
{
    VRK_CONSOLE_VARIABLES = 1024,
    VRK_CONSOLE_SIGNATURES = 9,
    VRK_CONSOLE_FUNCTIONS = 64, ///< of each signature
    VRK_CONSOLE_TEXT = 512000,  ///< bytes of the text, with its closing zero
    VRK_CONSOLE_LINE = 255,     ///< characters of a line that is obeyed
    VRK_CONSOLE_SCRIPTS = 16,   ///< scripts that may run inside one another
    VRK_CONSOLE_SCRIPT_RUNS =
        1024 ///< scripts that may begin within one, one that is run twice counting twice
};

/// Text, functions and variables by name, and the command language.
class VRK_API Console
{
public:
    /// Variables registered.
    int32_t varCount;
    int32_t funcCounts[VRK_CONSOLE_SIGNATURES]; ///< by signature, in the order of the arrays below
    char lastLoad[256];                         ///< line of the last LOAD3DS, in upper case
    float* varPointers[VRK_CONSOLE_VARIABLES];  ///< not owned
    char* varNames[VRK_CONSOLE_VARIABLES];      ///< owned malloc blocks, as all names

    /// Functions and their names, in the order in which a name is looked for. Names are owned.
    ///@{
    void (*voidFloatFuncs[VRK_CONSOLE_FUNCTIONS])(float);
    char* voidFloatNames[VRK_CONSOLE_FUNCTIONS];
    void (*voidIntFuncs[VRK_CONSOLE_FUNCTIONS])(int);
    char* voidIntNames[VRK_CONSOLE_FUNCTIONS];
    void (*voidFuncs[VRK_CONSOLE_FUNCTIONS])();
    char* voidNames[VRK_CONSOLE_FUNCTIONS];
    int (*intFloatFuncs[VRK_CONSOLE_FUNCTIONS])(float);
    char* intFloatNames[VRK_CONSOLE_FUNCTIONS];
    int (*intIntFuncs[VRK_CONSOLE_FUNCTIONS])(int);
    char* intIntNames[VRK_CONSOLE_FUNCTIONS];
    int (*intFuncs[VRK_CONSOLE_FUNCTIONS])();
    char* intNames[VRK_CONSOLE_FUNCTIONS];
    float (*floatFloatFuncs[VRK_CONSOLE_FUNCTIONS])(float);
    char* floatFloatNames[VRK_CONSOLE_FUNCTIONS];
    float (*floatIntFuncs[VRK_CONSOLE_FUNCTIONS])(int);
    char* floatIntNames[VRK_CONSOLE_FUNCTIONS];
    float (*floatFuncs[VRK_CONSOLE_FUNCTIONS])();
    char* floatNames[VRK_CONSOLE_FUNCTIONS];
    ///@}

    void (*progressFunc)(float); ///< told of the progress of loads; may be null
    char* text;                  ///< [VRK_CONSOLE_TEXT], a malloc block, owned; what the host hasn't drained
    Scene* scene;                ///< that the commands act on; not owned, may be null
    /// Set by EXIT until exitRequest is asked.
    uint8_t exitFlag;
    /// Set by CLS until clearRequest is asked.
    uint8_t clearFlag;

    /// The text begins with a banner.
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    /// Reports that went to this console are dropped from then on.
    ~Console();

    /// @return 0; 25 for null, logged, and the scene stays
    int setScene(Scene* scene);
    /// @param f  may be null. @return 0
    int addProgressFunc(void (*f)(float));

    /// A function of the host, called by EVAL. Names are copied whole; of the same name the one added last
    /// counts. A null name counts as an empty one. @return 0; 29 when the 64 of a signature are taken, logged
    ///@{
    int addFunc(void (*f)(float), const char* name);
    int addFunc(void (*f)(int), const char* name);
    int addFunc(void (*f)(), const char* name);
    int addFunc(int (*f)(float), const char* name);
    int addFunc(int (*f)(int), const char* name);
    int addFunc(int (*f)(), const char* name);
    int addFunc(float (*f)(float), const char* name);
    int addFunc(float (*f)(int), const char* name);
    int addFunc(float (*f)(), const char* name);
    ///@}

    /// A variable named VAR0, VAR1 and so on, by the number of variables before it.
    /// @param variable  a 32-bit float, whatever the pointer's type; not owned; null registers a name that
    /// reports its lack
    /// @return 0; 22 when all are taken, logged
    int addVar(void* variable);
    /// @param name  copied; null names the variable as above
    int addVar(void* variable, const char* name);

    /// Takes the text and empties it. @param out  [VRK_CONSOLE_TEXT]; null takes nothing
    /// @return its length without the closing zero
    int getText(char* out);
    /// Appends if the whole fits; null appends nothing. @return 0
    int addText(const char* text);

    bool exitRequest();  ///< true once for each EXIT
    bool clearRequest(); ///< true once for each CLS

    /// Calls the host's function of a name, which must be in upper case; of several signatures the first in
    /// the order above counts. The signature picks the argument.
    /// @return the function's result; 0 for one without, and for a name that nobody has; -2 for a null
    /// function
    float evalEFunc(const char* name, int intArg, float floatArg);
    /// @param name  in upper case
    /// @return the value cut towards zero, kept within an int, 0 for no number; -1 for a name that nobody
    /// has, -2 for a null variable. Values below 0 can't be told from these
    int setEVar(const char* name, float value);
    /// @param name  in upper case
    /// @return the value; -1 for a name that nobody has, -2 for a null variable
    float getEVar(const char* name);

    // These append to the text.

    void listEVars(); ///< a null variable shows the -2 of getEVar
    /// All functions, signature by signature.
    void listEFuncs();
    /// Totals over all groups; nothing without a scene.
    void SceneInfo();
    /// Files and folders with their sizes, in byte order of their names; folders count 0 bytes.
    /// @param pattern  may have * and ? behind the last separator; case is no matter
    void dir(const char* pattern);

    /// Obeys one line of the command language.
    /// @return 0 when a command ran, even one that found fault; otherwise the number of the logged report:
    /// 18 no such command, or more than 255 characters; 21 too few words; 25 no scene, 26 no group in it;
    /// 52 a value out of range
    int command(const char* line);
    /// The same.
    int parse(const char* line);

    /// Obeys the lines of a file that begin with a '#'. A line that fails doesn't stop the rest.
    /// @return 0; 31 when the file can't be opened; 18 when 16 scripts run inside one another already, or
    /// when 1,024 have begun within the outermost, which ends them all. Logged
    int readScript(const char* fileName);
    /// Obeys one line of a script, for hosts that read scripts themselves: the command behind a '#', without
    /// blanks around it. Any other line is a comment. @return what parse returns; 0 for a comment
    int parseScriptLine(String line);
    /// The next line of a script: up to a carriage return, a line feed, an escape or the end of the file, cut
    /// to 255 characters. The last character of a file that doesn't end its last line comes twice.
    String readln(FILE* file);
};

#endif
