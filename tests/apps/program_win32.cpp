// Runs the program with its streams in files. Consoles can't be read back here.

#include "tests/apps/program.h"

#include "tests/support/process.h"

RunResult ProgramTest::run(const std::vector<std::string>& arguments, const std::string& input) const
{
    const TempFolder streams;
    std::vector<std::string> command = {VORNIK_PROGRAM};
    command.insert(command.end(), arguments.begin(), arguments.end());
    RunResult result;
    result.status = runProcess(command, folder.root(),
                               {streams.write("in", input), streams.path("out"), streams.path("err")});
    result.out = streams.readText("out");
    result.err = streams.readText("err");
    return result;
}

std::string ProgramTest::runOnTerminal(const std::vector<std::string>& /*arguments*/,
                                       const std::vector<std::string>& /*keys*/) const
{
    return "";
}

bool ProgramTest::hasTerminals()
{
    return false;
}

bool ProgramTest::hasPython()
{
    return false;
}
