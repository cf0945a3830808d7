// The folders of src/ depend on each other one way only. This reads every source file and fails
// naming each include that points the other way, so the rule holds without anyone checking it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>

namespace {

namespace fs = std::filesystem;

// Each folder's level, from the bottom up. A file may include its own folder and the folders of
// lower levels only, never a folder of its own level or above, so no two folders can include each
// other, directly or through a third.
const std::map<std::string, int> kLevels = {
    // The wire, the link and the reply decoders.
    {"link", 0},
    // The virtual vehicle; the shared session state and the screen models.
    {"sim", 1}, {"session", 1},
    // Tables and grid layouts; the Qt renderings of the models; which wire a port name opens;
    // the vehicle profiles read from their files.
    {"data", 2}, {"ui", 2}, {"ports", 2}, {"garage", 2},
    // The communication settings; the recorder and the player.
    {"settings", 3}, {"log", 3},
    // The generic services.
    {"obd", 4},
    // The Nissan and Toyota modules, built on the generic ones.
    {"enhanced", 5},
    // The window and kvx.
    {"app", 6}, {"cli", 6},
};

const fs::path kSource = KVX_SOURCE_DIR;

// The top folder of src/ a file lies in.
std::string folderOf(const fs::path& file)
{
    return file.lexically_relative(kSource).begin()->string();
}

// The folder an include names, or "" when it names none of src/ ("moc_...", a file beside it).
std::string includedFolder(const std::string& include)
{
    const auto slash = include.find('/');
    if (slash == std::string::npos)
        return {};
    const std::string folder = include.substr(0, slash);
    return kLevels.count(folder) != 0 || fs::is_directory(kSource / folder) ? folder : std::string();
}

std::string levelText(const std::string& folder)
{
    const auto it = kLevels.find(folder);
    return it == kLevels.end() ? std::string("no level") : "level " + std::to_string(it->second);
}

TEST(IncludeDirection, EveryFolderOfTheSourcesHasALevel)
{
    ASSERT_TRUE(fs::is_directory(kSource)) << kSource;
    for (const auto& entry : fs::directory_iterator(kSource)) {
        const std::string folder = entry.path().filename().string();
        if (entry.is_directory() && kLevels.count(folder) == 0)
            ADD_FAILURE() << "src/" << folder << " needs a level in this test and in the README";
    }
}

TEST(IncludeDirection, NoFileIncludesAFolderOfItsOwnLevelOrAbove)
{
    static const std::regex includeLine(R"(^\s*#\s*include\s*"([^"]+)\")");
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(kSource)) {
        const std::string ext = entry.path().extension().string();
        if (!entry.is_regular_file() || (ext != ".h" && ext != ".cpp"))
            continue;
        ++files;
        const std::string own = folderOf(entry.path());
        std::ifstream in(entry.path());
        std::string line;
        for (int number = 1; std::getline(in, line); ++number) {
            std::smatch m;
            if (!std::regex_search(line, m, includeLine))
                continue;
            const std::string folder = includedFolder(m[1]);
            if (folder.empty() || folder == own)
                continue;
            const auto from = kLevels.find(own);
            const auto to = kLevels.find(folder);
            if (from != kLevels.end() && to != kLevels.end() && to->second < from->second)
                continue;
            ADD_FAILURE() << entry.path().lexically_relative(kSource.parent_path()).string() << ":" << number
                          << " includes \"" << m[1] << "\": " << own << " (" << levelText(own) << ") may include only"
                          << " folders of a lower level, and " << folder << " is " << levelText(folder);
        }
    }
    EXPECT_GT(files, 100) << "the sources were not found under " << kSource;
}

} // namespace
