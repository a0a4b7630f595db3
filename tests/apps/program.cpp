#include "tests/apps/program.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <png.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

int lineCount(const std::string& text)
{
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

Rgb Bitmap::at(int x, int y) const
{
    const size_t i = (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 3;
    return {rgb.at(i), rgb.at(i + 1), rgb.at(i + 2)};
}

int Bitmap::countUnlike(const Rgb& color) const
{
    return count(
        [&color](const Rgb& pixel) {
            return std::abs(pixel.r - color.r) + std::abs(pixel.g - color.g) + std::abs(pixel.b - color.b) >
                   12;
        });
}

double Bitmap::light() const
{
    double sum = 0;
    for (const uint8_t channel : rgb)
        sum += channel;
    return sum;
}

static std::string quoted(const std::string& text)
{
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

std::string commandLine(const std::string& folder, const std::vector<std::string>& arguments)
{
    std::string command = "cd " + quoted(folder) + " && ";
    // The leak checker misreads the thread-local blocks of libraries where they lie at certain addresses.
    if (!std::getenv("ASAN_OPTIONS"))
        command += "ASAN_OPTIONS=intercept_tls_get_addr=0 ";
    // The graphics driver keeps memory to the end of the process.
    if (!std::getenv("LSAN_OPTIONS"))
        command +=
            "LSAN_OPTIONS=" + quoted("suppressions=" VORNIK_SUPPRESSIONS ":print_suppressions=0") + " ";
    command += quoted(VORNIK_PROGRAM);
    for (const std::string& argument : arguments)
        command += " " + quoted(argument);
    return command;
}

RunResult ProgramTest::run(const std::vector<std::string>& arguments, const std::string& input) const
{
    const TempFolder streams;
    const std::string command = commandLine(folder.root(), arguments) + " < " +
                                quoted(streams.write("in", input)) + " > " + quoted(streams.path("out")) +
                                " 2> " + quoted(streams.path("err"));
    const int status = std::system(command.c_str());
    RunResult result;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = streams.read("out");
    result.err = streams.read("err");
    return result;
}

static bool promptWaits(const std::string& shown)
{
    return shown.size() >= 2 && shown.compare(shown.size() - 2, 2, "> ") == 0;
}

std::string ProgramTest::runOnTerminal(const std::vector<std::string>& arguments,
                                       const std::vector<std::string>& keys) const
{
    const std::string command = "export TERM=xterm; " + commandLine(folder.root(), arguments);
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0)
    {
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    std::string shown;
    size_t pressed = 0;
    char buffer[4096];
    ssize_t got;
    while (child > 0 && (got = read(terminal, buffer, sizeof buffer)) > 0)
    {
        shown.append(buffer, static_cast<size_t>(got));
        if (pressed < keys.size() && promptWaits(shown))
        {
            const std::string& key = keys[pressed++];
            if (::write(terminal, key.data(), key.size()) < 0)
                break;
        }
    }
    int status = 0;
    waitpid(child, &status, 0);
    close(terminal);
    return shown;
}

std::string ProgramTest::write(const std::string& name, const Scene3ds& scene) const
{
    folder.write(name, build3ds(scene));
    return name;
}

Bitmap ProgramTest::render(const std::string& file, const std::vector<std::string>& options) const
{
    std::vector<std::string> arguments = {"render", file, "-o", "picture.png"};
    for (const auto& usual :
         {std::pair("--size", "120x90"), std::pair("--background", "black"), std::pair("--samples", "1")})
        if (std::find(options.begin(), options.end(), usual.first) == options.end())
            arguments.insert(arguments.end(), {usual.first, usual.second});
    arguments.insert(arguments.end(), options.begin(), options.end());
    const RunResult result = run(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    return readPng("picture.png");
}

Bitmap ProgramTest::readPng(const std::string& name) const
{
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    Bitmap bitmap;
    if (!png_image_begin_read_from_file(&png, folder.path(name).c_str()))
        return bitmap;
    png.format = PNG_FORMAT_RGB;
    bitmap.width = static_cast<int>(png.width);
    bitmap.height = static_cast<int>(png.height);
    bitmap.rgb.resize(PNG_IMAGE_SIZE(png));
    png_image_finish_read(&png, nullptr, bitmap.rgb.data(), 0, nullptr);
    return bitmap;
}

bool ProgramTest::exists(const std::string& name) const
{
    return std::filesystem::exists(folder.path(name));
}
