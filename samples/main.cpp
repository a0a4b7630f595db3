// make_sample OUTPUT_FOLDER: writes harbour.3ds and its images.

#include <cstdio>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "samples/export.h"
#include "tests/support/imagewriter.h"

static bool write(const std::filesystem::path& path, const std::vector<uint8_t>& bytes)
{
    if (!bytes.empty() && saveFile(path.string(), bytes))
        return true;
    std::fprintf(stderr, "make_sample: can't write %s\n", path.string().c_str());
    return false;
}

static bool writeAnimations(const std::filesystem::path& folder)
{
    for (const sample::Animation& animation : sample::animations())
    {
        std::string list;
        for (size_t frame = 0; frame < animation.frames.size(); ++frame)
        {
            const std::string& name = animation.frames[frame];
            const sample::Image image = animation.paint(static_cast<int>(frame));
            if (!write(folder / name, sample::encodePicture(name, image)))
                return false;
            list += name + "\n";
        }
        if (!write(folder / animation.name, std::vector<uint8_t>(list.begin(), list.end())))
            return false;
    }
    return true;
}

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "usage: make_sample OUTPUT_FOLDER\n");
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    const sample::Scene scene = sample::buildHarbour();
    if (!write(folder / "harbour.3ds", sample::encodeScene(scene)))
        return 1;
    std::set<std::string> wanted;
    for (const int material : sample::usedMaterials(scene))
        wanted.insert(sample::materialOf(material).image);
    for (const sample::Picture& picture : sample::pictures())
    {
        const sample::Image image = picture.paint();
        if (!write(folder / picture.name, sample::encodePicture(picture.name, image)))
            return 1;
        const std::string below = sample::reflectedName(picture.name);
        if (wanted.count(below) &&
            !write(folder / below, sample::encodePicture(below, sample::reflectedImage(image))))
            return 1;
    }
    return writeAnimations(folder) ? 0 : 1;
}
