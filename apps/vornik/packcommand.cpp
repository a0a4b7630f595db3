#include "apps/vornik/packcommand.h"

#include <CLI/CLI.hpp>

#include "apps/vornik/pack.h"

static PackOptions options; // filled by the command line's callbacks

static CLI::App* addVerb(CLI::App* pack, const char* name, const char* text)
{
    CLI::App* command = pack->add_subcommand(name, text);
    command->add_option("PACK", options.pack, "The pack file")->required();
    return command;
}

static CLI::App* addCreate(CLI::App* pack)
{
    CLI::App* command = addVerb(pack, "create", "Make a pack of files");
    command->add_option("FILES", options.files, "Files, and folders with all that is in them")->required();
    command
        ->add_option("--root", options.root,
                     "Folder that names count from (the deepest one that holds all files)")
        ->type_name("DIR");
    command
        ->add_option("--prefix", options.prefix,
                     "Folder in front of all names, what a host gives as the "
                     "folder of its images")
        ->type_name("DIR")
        ->capture_default_str();
    command->footer("Names are upper-cased and have backslashes: with the prefix data, maps/wall.jpg becomes "
                    "DATA\\MAPS\\WALL.JPG.\n"
                    "Example: vornik pack create harbour.pak harbour/\n"
                    "         vornik render --pack harbour.pak harbour.3ds -o harbour.png");
    return command;
}

static CLI::App* addExtract(CLI::App* pack)
{
    CLI::App* command = addVerb(pack, "extract", "Unpack files");
    command->add_option("NAMES", options.names, "Members to unpack (all)");
    command->add_option("--into", options.into, "Folder to unpack into")
        ->type_name("DIR")
        ->capture_default_str();
    command->add_flag("--force", options.force, "Replace files that exist");
    return command;
}

std::function<int()> addPack(CLI::App* app)
{
    CLI::App* pack = app->add_subcommand("pack", "Make, list, unpack and check pack files");
    pack->require_subcommand(1);
    pack->footer(
        "Exit status: 0 done, 1 a file can't be served or a pack has faults, 2 a wrong command line.");
    CLI::App* create = addCreate(pack);
    CLI::App* list = addVerb(pack, "list", "List the members");
    CLI::App* extract = addExtract(pack);
    addVerb(pack, "verify", "Tell what is wrong with a pack");
    return [=]
    {
        if (create->parsed())
            return packCreate(options);
        if (list->parsed())
            return packList(options);
        return extract->parsed() ? packExtract(options) : packVerify(options);
    };
}
