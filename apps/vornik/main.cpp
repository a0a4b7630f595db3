// vornik: the command-line host. Each subcommand has a source of its own; this one reads the command line.

#include <CLI/CLI.hpp>

#include "apps/vornik/info.h"
#include "apps/vornik/render.h"

static void addLoadOptions(CLI::App* command, LoadOptions* load)
{
    command->add_option("--textures", load->textures, "Folder of the images (the scene's own)");
    command->add_flag("--classic", load->classic, "Read the file strictly, as old hosts do");
}

static CLI::App* addRender(CLI::App* app, RenderOptions* options, std::string* size)
{
    CLI::App* command = app->add_subcommand("render", "Draw a picture of a scene");
    command->footer("Example: vornik render harbour.3ds -o harbour.png --size 1920x1080 --shadows");
    command->add_option("FILE.3DS", options->scene, "The scene")->required();
    command->add_option("-o,--output", options->output, "The picture, a .png or .jpg")->required();
    command->add_option("--size", *size, "Width and height in pixels")->default_str("1280x720");
    command->add_option("--camera", options->camera, "Camera of the file, from 1; 0 frames the whole scene")
        ->check(CLI::NonNegativeNumber);
    command->add_flag("--smooth,!--no-smooth", options->load.smooth,
                      "Split vertices along smoothing groups (on)");
    command->add_flag("--shadows", options->light.shadows, "Trace shadows");
    command->add_option("--ambient", options->light.ambient, "Light that reaches everything, 0 to 1")
        ->check(CLI::Range(0.0f, 1.0f))
        ->capture_default_str();
    command->add_option("--background", options->background, "RRGGBB or a name such as black, white, sky")
        ->capture_default_str();
    command->add_option("--samples", options->samples, "Samples along each side of a pixel")
        ->check(CLI::Range(1, 8))
        ->capture_default_str();
    command->add_option("--up", options->upAxis, "Axis that points up when the scene is framed")
        ->check(CLI::IsMember({'x', 'y', 'z'}))
        ->default_str("z");
    command->add_flag_callback(
        "--wire", [options] { options->flags |= VRK_RENDER_WIRE; }, "Draw edges only");
    command->add_flag_callback(
        "--flat", [options] { options->flags |= VRK_RENDER_FLAT; }, "Shade each face flat");
    command->add_flag_callback(
        "--no-textures", [options] { options->flags |= VRK_RENDER_NOTEXTURE; }, "Draw light only");
    command->add_flag_callback(
        "--two-sided", [options] { options->flags |= VRK_RENDER_TWOSIDED; }, "Draw faces from behind, too");
    command->add_flag("--partial", options->partial, "Draw what there is of a file that is cut short");
    command->add_flag("--quiet", options->quiet, "No progress bar, no lines about missing images");
    addLoadOptions(command, &options->load);
    return command;
}

static CLI::App* addInfo(CLI::App* app, InfoOptions* options)
{
    CLI::App* command = app->add_subcommand("info", "Tell what is in a scene");
    command->footer("Example: vornik info harbour.3ds --json");
    command->add_option("FILE.3DS", options->scene, "The scene")->required();
    command->add_flag("--json", options->json, "Print JSON for programs");
    addLoadOptions(command, &options->load);
    return command;
}

int main(int argc, char** argv)
{
    CLI::App app("Vornik, a real-time 3D engine: look at .3DS scenes from the command line.", "vornik");
    app.set_version_flag("--version", "vornik " VORNIK_VERSION);
    app.require_subcommand(1);

    RenderOptions renderOptions;
    InfoOptions infoOptions;
    infoOptions.load.smooth = false;
    std::string size = "1280x720";
    CLI::App* renderCommand = addRender(&app, &renderOptions, &size);
    CLI::App* infoCommand = addInfo(&app, &infoOptions);
    try
    {
        app.parse(argc, argv);
        Color background;
        if (!parseSize(size, &renderOptions.width, &renderOptions.height))
            throw CLI::ValidationError("--size", "WIDTHxHEIGHT, each from 1 to 8192");
        if (!parseColor(renderOptions.background, &background))
            throw CLI::ValidationError("--background",
                                       "RRGGBB or one of black, white, grey, red, green, blue, sky");
    }
    catch (const CLI::ParseError& error)
    {
        return app.exit(error) == 0 ? 0 : 1;
    }

    renderOptions.light.classic = renderOptions.load.classic;
    if (renderCommand->parsed())
        return render(renderOptions);
    return infoCommand->parsed() ? info(infoOptions) : 1;
}
