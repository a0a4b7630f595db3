// vornik: the command-line host. Each subcommand has a source of its own; this one reads the command line.

#include <cstdio>
#include <exception>
#include <functional>

#include <CLI/CLI.hpp>

#include "apps/vornik/arguments.h"
#include "apps/vornik/bake.h"
#include "apps/vornik/console.h"
#include "apps/vornik/info.h"
#include "apps/vornik/packcommand.h"
#include "apps/vornik/render.h"
#ifdef VORNIK_VIEWER
#include "apps/vornik/view/view.h"
#endif

enum ExitStatus
{
    statusFailed = 1, ///< a file can't be served; the subcommands return it
    statusUsage = 2   ///< the command line makes no sense
};

// The options live as long as the program: the command line's callbacks fill them.
static RenderOptions renderOptions;
static BakeOptions bakeOptions;
#ifdef VORNIK_VIEWER
static ViewOptions viewOptions;
#endif
static InfoOptions infoOptions;
static ConsoleOptions consoleOptions;

static void addLoadOptions(CLI::App* command, LoadOptions* load)
{
    command->add_option("--pack", load->pack, "Pack file that has the scene and its images")
        ->type_name("PACK");
    command->add_option("--textures", load->textures, "Folder of the images (the scene's own)")
        ->type_name("DIR");
    command->add_flag("--classic", load->classic, "Read the file strictly, as old hosts do");
}

// Checks an option's text with a function that stores the value.
template <typename Parse>
static CLI::Validator parsedBy(Parse parse, const std::string& expected)
{
    return CLI::Validator([parse, expected](std::string& text)
                          { return parse(text) ? std::string() : text + ": use " + expected; },
                          "");
}

static void addSizeOption(CLI::App* command, const std::string& text, int* width, int* height)
{
    static std::string size = "1280x720";
    command->add_option("--size", size, text)
        ->check(parsedBy([width, height](const std::string& given)
                         { return parseSize(given, width, height); },
                         "WIDTHxHEIGHT, each from 1 to 16384"))
        ->type_name("WxH")
        ->capture_default_str();
}

static void addStyleOptions(CLI::App* command, Color* background, int* flags)
{
    static std::string color = "30333c";
    command->add_option("--background", color, "RRGGBB or black, white, grey, red, green, blue, sky")
        ->check(parsedBy([background](const std::string& text) { return parseColor(text, background); },
                         "RRGGBB or one of black, white, grey, red, green, blue, sky"))
        ->type_name("COLOR")
        ->capture_default_str();

    const auto addStyle = [&](const char* name, int flag, const char* text)
    {
        command->add_flag_callback(
            name, [flags, flag] { *flags |= flag; }, text);
    };
    addStyle("--wire", VRK_RENDER_WIRE, "Draw edges only");
    addStyle("--flat", VRK_RENDER_FLAT, "Shade each face flat");
    addStyle("--no-textures", VRK_RENDER_NOTEXTURE, "Draw light only");
    addStyle("--two-sided", VRK_RENDER_TWOSIDED, "Draw faces from behind, too");
}

static void addPictureOptions(CLI::App* command, PictureOptions* picture)
{
    addSizeOption(command, "Width and height in pixels", &picture->width, &picture->height);
    command->add_option("--samples", picture->samples, "Samples along each side of a pixel")
        ->check(CLI::Range(1, 8))
        ->type_name("N")
        ->capture_default_str();
    addStyleOptions(command, &picture->background, &picture->flags);
}

static void addViewOptions(CLI::App* command, int* camera, Framing* framing)
{
    command
        ->add_option("--camera", *camera,
                     "Camera of the file, from 1; 0 frames the whole scene (the first camera)")
        ->check(CLI::NonNegativeNumber)
        ->type_name("N");
    command->add_option("--up", framing->upAxis, "Axis that points up where the scene is framed: x, y or z")
        ->check(CLI::IsMember({'x', 'y', 'z'}))
        ->type_name("AXIS")
        ->default_str("z");
    command->add_option("--turn", framing->turn, "Frame from further around, in degrees")
        ->check(CLI::Range(-360.0f, 360.0f))
        ->type_name("DEGREES")
        ->capture_default_str();
    command->add_option("--tilt", framing->tilt, "Frame from this height, in degrees above level")
        ->check(CLI::Range(-85.0f, 85.0f))
        ->type_name("DEGREES")
        ->capture_default_str();
}

static void addFrameOptions(CLI::App* command, RenderOptions* options)
{
    FrameRange* frames = &options->frames;
    CLI::Option* one = command
                           ->add_option_function<int>(
                               "--frame",
                               [frames](int frame)
                               {
                                   frames->first = frames->last = frame;
                                   frames->asked = true;
                               },
                               "Frame of the scene's animation (0)")
                           ->check(CLI::Range(0, 1000000))
                           ->type_name("N");
    command
        ->add_option_function<std::string>(
            "--frames",
            [frames](const std::string& text)
            {
                parseFrames(text, &frames->first, &frames->last);
                frames->asked = frames->isFilm = true;
            },
            "Frames: pictures with numbers in their names, or one animated .apng")
        ->check(parsedBy(
            [](const std::string& text)
            {
                int first, last;
                return parseFrames(text, &first, &last);
            },
            "FIRST..LAST, each from 0 to 1000000"))
        ->type_name("A..B")
        ->excludes(one);
    command->add_option("--every", frames->step, "Draw each Nth of the frames")
        ->check(CLI::Range(1, 1000000))
        ->type_name("N")
        ->capture_default_str();
    command->add_option("--fps", frames->picturesASecond, "Pictures a second of a .apng")
        ->check(CLI::Range(1, 100))
        ->type_name("N")
        ->capture_default_str();
}

static void addDrawingOptions(CLI::App* command, int* flags, const std::function<void(bool)>& setSorted)
{
    command
        ->add_option_function<std::string>(
            "--transparent", [setSorted](const std::string& order) { setSorted(order == "sorted"); },
            "Order of transparent faces: sorted from far to near, or immediate, mesh by mesh (sorted)")
        ->check(CLI::IsMember({"sorted", "immediate"}))
        ->type_name("ORDER");
    command->add_flag_callback(
        "--cull", [flags] { *flags |= VRK_RENDER_CULL; }, "Skip meshes outside the view");
}

static void addLightOptions(CLI::App* command, LightOptions* light)
{
    command->add_flag("--shadows", light->shadows, "Trace the shadows of every light");
    command->add_option("--ambient", light->ambient, "Light that reaches everything, 0 to 1")
        ->check(CLI::Range(0.0f, 1.0f))
        ->type_name("F")
        ->capture_default_str();
}

static void addSmoothOption(CLI::App* command, LoadOptions* load)
{
    command->add_flag("--smooth,!--no-smooth", load->smooth, "Split vertices along smoothing groups (on)");
}

static void addSourceOptions(CLI::App* command, std::string* lights, LoadOptions* load, bool* partial)
{
    command->add_option("--lights", *lights, "Take the light from a file of vornik bake")->type_name("FILE");
    addLoadOptions(command, load);
    command->add_flag("--partial", *partial, "Draw what there is of a file that is cut short");
}

static CLI::App* addRender(CLI::App* app, RenderOptions* options)
{
    CLI::App* command = app->add_subcommand("render", "Draw a picture of a scene");
    command->footer("Examples:\n"
                    "  vornik render harbour.3ds -o harbour.png --size 1920x1080 --shadows\n"
                    "  vornik render robot.3ds -o robot.apng --frames 0..90 --every 2\n"
                    "  vornik render plane.3ds -o plane.jpg --camera 0 --turn 120 --background sky\n"
                    "Exit status: 0 done, 1 a file can't be read or written, 2 a wrong command line.");
    command->add_option("FILE.3DS", options->scene, "The scene")->required();
    command->add_option("-o,--output", options->output, "The picture, a .png, .jpg, .jpeg or .apng")
        ->check(parsedBy(isImageName, "a name that ends in .png, .jpg, .jpeg or .apng"))
        ->type_name("FILE")
        ->required();
    addPictureOptions(command, &options->picture);
    command
        ->add_option("--rasterizer", options->picture.rasterizer,
                     "0 draws with OpenGL, 1 with Direct3D on the screen: unsorted, and as a mirror image")
        ->check(CLI::IsMember({0, 1}))
        ->capture_default_str();
    addDrawingOptions(command, &options->picture.flags,
                      [options](bool sorted) { options->picture.sorted = sorted; });
    addViewOptions(command, &options->camera, &options->framing);
    addFrameOptions(command, options);
    addSmoothOption(command, &options->load);
    addLightOptions(command, &options->light);
    addSourceOptions(command, &options->lights, &options->load, &options->partial);
    command->add_flag("--quiet", options->quiet, "No progress bar, no lines about missing images");
    return command;
}

#ifdef VORNIK_VIEWER
static CLI::App* addView(CLI::App* app, ViewOptions* options)
{
    CLI::App* command = app->add_subcommand("view", "Show a scene in a window");
    command->footer("Examples:\n"
                    "  vornik view harbour.3ds --shadows\n"
                    "  vornik view ship.3ds --pack data.pak --size 1024x768\n"
                    "F1 in the window tells the keys. Files dropped on it are loaded.\n"
                    "Exit status: 0 done, 1 no window or a file that can't be read, 2 a wrong command line.");
    command->add_option("FILE.3DS", options->scene, "The scene; none for an empty window");
    addSizeOption(command, "Width and height in pixels", &options->width, &options->height);
    addStyleOptions(command, &options->background, &options->flags);
    addDrawingOptions(command, &options->flags,
                      [options](bool sorted)
                      { options->transparency = sorted ? Transparency::sorted : Transparency::immediate; });
    addViewOptions(command, &options->camera, &options->framing);
    addSmoothOption(command, &options->load);
    addLightOptions(command, &options->light);
    addSourceOptions(command, &options->lights, &options->load, &options->partial);
    return command;
}
#endif

static CLI::App* addBake(CLI::App* app, BakeOptions* options)
{
    CLI::App* command = app->add_subcommand("bake", "Trace a scene's light and keep it in a file");
    command->footer("Examples:\n"
                    "  vornik bake harbour.3ds -o harbour.lights --shadows\n"
                    "  vornik render harbour.3ds -o harbour.png --lights harbour.lights\n"
                    "Load the scene in the same way both times: the file has a colour for each vertex.\n"
                    "Exit status: 0 done, 1 a file can't be read or written, 2 a wrong command line.");
    command->add_option("FILE.3DS", options->scene, "The scene")->required();
    command->add_option("-o,--output", options->output, "The file of light")->type_name("FILE")->required();
    addLightOptions(command, &options->light);
    addSmoothOption(command, &options->load);
    addLoadOptions(command, &options->load);
    command->add_flag("--quiet", options->quiet, "No progress bar");
    return command;
}

static CLI::App* addInfo(CLI::App* app, InfoOptions* options)
{
    CLI::App* command = app->add_subcommand("info", "Tell what is in a scene");
    command->footer("Examples:\n"
                    "  vornik info harbour.3ds\n"
                    "  vornik info harbour.3ds --json | python3 -m json.tool\n"
                    "Exit status: 0 done, 1 the file can't be read, 2 a wrong command line.");
    command->add_option("FILE.3DS", options->scene, "The scene")->required();
    command->add_flag("--json", options->json, "Print JSON for programs");
    command->add_flag("--octree", options->octree, "Build the octree and tell its figures");
    addLoadOptions(command, &options->load);
    return command;
}

static CLI::App* addConsole(CLI::App* app, ConsoleOptions* options)
{
    CLI::App* command = app->add_subcommand("console", "Command the engine, line by line");
    command->footer(
        "Examples:\n"
        "  vornik console\n"
        "  vornik console setup.txt\n"
        "  printf 'LOAD3DS harbour.3ds .\\nSCENEINFO\\n' | vornik console\n"
        "In a script the commands begin with a #. HELP lists them.\n"
        "Exit status: 0 done, 1 a file can't be read, 2 a wrong command line; of a script or of piped\n"
        "lines the number of the first that failed: 18 no such command, 21 words are missing,\n"
        "26 nothing is loaded, 52 a value out of range.");
    command->add_option("SCRIPT", options->script,
                        "Script to run, - for standard input (lines that are typed)");
    addSizeOption(command, "Width and height of what EVAL SHOT draws, in pixels", &options->width,
                  &options->height);
    return command;
}

static int runCommand(int argc, char** argv)
{
    CLI::App app("Vornik, a real-time 3D engine: look at .3DS scenes from the command line.", "vornik");
    app.allow_windows_style_options(false); // a path may begin with a slash
    app.set_version_flag("--version", "vornik " VORNIK_VERSION);
    app.require_subcommand(1);
    app.footer("vornik render --help, vornik info --help and vornik pack --help list the options.");
    CLI::App* renderCommand = addRender(&app, &renderOptions);
    CLI::App* infoCommand = addInfo(&app, &infoOptions);
    CLI::App* bakeCommand = addBake(&app, &bakeOptions);
    CLI::App* consoleCommand = addConsole(&app, &consoleOptions);
    const std::function<int()> runPack = addPack(&app);
#ifdef VORNIK_VIEWER
    const CLI::App* viewCommand = addView(&app, &viewOptions);
#endif
    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError& error)
    {
        return app.exit(error) == 0 ? 0 : statusUsage;
    }

    if (renderCommand->parsed())
    {
        renderOptions.light.classic = renderOptions.load.classic;
        // Old hosts that show a still don't ask for keyframes.
        renderOptions.load.keyframes = !renderOptions.load.classic || renderOptions.frames.asked;
        renderOptions.light.twoSided = (renderOptions.picture.flags & VRK_RENDER_TWOSIDED) != 0;
        return render(renderOptions);
    }
#ifdef VORNIK_VIEWER
    if (viewCommand->parsed())
    {
        viewOptions.light.classic = viewOptions.load.classic;
        viewOptions.light.turnsBacks = false; // there is no one side to look from
        viewOptions.framing.fov = 50.0f;
        return view(viewOptions);
    }
#endif
    if (bakeCommand->parsed())
    {
        bakeOptions.light.classic = bakeOptions.load.classic;
        bakeOptions.light.turnsBacks = false; // there is no viewer
        bakeOptions.load.keyframes = !bakeOptions.load.classic;
        return bake(bakeOptions);
    }
    if (consoleCommand->parsed())
        return console(consoleOptions);
    if (!infoCommand->parsed())
        return runPack();
    infoOptions.load.keyframes = false; // dummies and instances are no meshes of the file
    return info(infoOptions);
}

int main(int argc, char** argv)
{
    try
    {
        return runCommand(argc, argv);
    }
    catch (const std::exception& error) // no memory for a picture, no working folder
    {
        std::fprintf(stderr, "vornik: %s\n", error.what());
        return statusFailed;
    }
}
