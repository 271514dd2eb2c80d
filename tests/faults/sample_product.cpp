#include "sample_product.h"

#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "embedded_text.h"
#include "machine.h"
#include "package/package_writer.h"

namespace {

using platform::RegistryRoot;
using SampleProduct::Version;

struct Replacement {
    const char* text;
    const char* by;
};

// The test isn't there to answer questions: everything is installed, also what the user would have to choose.
constexpr Replacement kInAllVersions[] = {
    {R"(<Value Name="SHARE_SETUPS" DataType="value" UseOld="1">0<)",
     R"(<Value Name="SHARE_SETUPS" DataType="value" UseOld="1">1<)"},
    {R"(<Value Name="SHOULD_UNINSTALL" DataType="value">0<)",
     R"(<Value Name="SHOULD_UNINSTALL" DataType="value">1<)"},
};
constexpr Replacement kInSecond[] = {
    {"<MajorVersion>1<", "<MajorVersion>2<"},
    {R"(Type="REG_DWORD">010000<)", R"(Type="REG_DWORD">020000<)"},
    {R"(Key="level">6<)", R"(Key="level">9<)"},
    {"samples/hello.sh", "samples/second.sh"},
    {"Tandrel help[URL_LINK]", "Tandrel support[URL_LINK]"},
    {R"(<Port Port="8317")", R"(<Port Port="8318")"},
};
constexpr Replacement kInBroken[] = {
    {"<FN Alias=\"Banner\">gui/banner.png</FN>",
     "<FN Alias=\"Banner\">gui/banner.png</FN><FN Dest=\"[INSTALL_DIR]\">missing</FN>"},
};

template <std::size_t kCount>
void replace(std::string& text, const Replacement (&replacements)[kCount]) {
    for (const Replacement& replacement : replacements) {
        const std::size_t at = text.find(replacement.text);
        if (at == std::string::npos) {
            std::printf("The sample product has changed: it has no text %s\n", replacement.text);
            std::exit(2);
        }
        text.replace(at, std::string(replacement.text).size(), replacement.by);
    }
}

std::string descriptionOf(Version version) {
    std::string text = embeddedText("install.xml");
    replace(text, kInAllVersions);
    if (version != Version::kFirst) {
        replace(text, kInSecond);
    }
    if (version == Version::kBrokenSecond) {
        replace(text, kInBroken);
    }
    return text;
}

// Alias, which has no separators, and content.
std::vector<std::pair<std::string, std::string>> filesOf(Version version) {
    const bool isFirst = version == Version::kFirst;
    const std::string number = isFirst ? "1" : "2";
    const std::string description = descriptionOf(version);
    return {{"install.xml", description},
            {"UninstallDescription", description},
            {"Uninstaller", "the uninstaller " + number},
            {"README.md", "read me " + number},
            {"THIRD-PARTY-LICENCES.md", "the same in all versions"},
            {"docsgetting-started.md", "# Getting started\n\nFirst line.\n"},
            {"tandrel.conf", embeddedText("tandrel.conf") + "# " + number + "\n"},
            {"getting-started.change", embeddedText("getting-started.change")},
            {"binpackager", "the packager " + number},
            {"imagesinstaller-linux", "the image of all versions"},
            {"sampleshello.xml", "<hello/>"},
            {isFirst ? "sampleshello.sh" : "samplessecond.sh", "echo hello"},
            {"Agreement", "I agree " + number},
            {"Banner", "a picture"},
            {"AppIcon", "the icon of all versions"}};
}

// The name in the package, under which an action may put the file on the disk.
std::string nameOf(const std::string& alias) {
    return alias == "Agreement" ? "agreement.md"
           : alias == "Banner"  ? "banner.png"
           : alias == "AppIcon" ? "appicon.png"
                                : alias;
}

void pack(MemoryFileSystem& files, Version version) {
    const std::string source = std::string(SampleProduct::kKit) + "/files/";
    std::vector<PackageFile> list;
    for (const auto& [alias, content] : filesOf(version)) {
        files.addFile(source + alias, content);
        list.push_back({source + alias, nameOf(alias), alias});
    }
    PackageOptions options;
    options.stripes = 1;
    options.level = 1;
    PackageWriter(files).write(list, options, SampleProduct::packageOf(version));
    for (const PackageFile& file : list) {
        files.removeFile(file.path);
    }
}

}  // namespace

std::string SampleProduct::packageOf(Version version) {
    const char* const names[] = {"/first", "/second", "/broken"};
    return kKit + std::string(names[static_cast<int>(version)]);
}

void SampleProduct::prepare(Machine& machine) {
    MemoryPlatform& fakes = machine.fakes;
    for (const Version version : {Version::kFirst, Version::kSecond, Version::kBrokenSecond}) {
        pack(fakes.files, version);
    }
    fakes.files.addFile("/opt/tandrel/README.md", "somebody else's");
    fakes.files.addFile("/opt/tandrel/notes", "the user's");
    fakes.files.addDirectory("/usr/local/share/applications");
    fakes.files.addDirectory("/var/state");  // another product's run has made it
    constexpr const char* kEnvironment = "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment";
    fakes.registry.addText(RegistryRoot::kLocalMachine, kEnvironment, "PATH", "/usr/bin;/bin;");
    fakes.registry.addText(RegistryRoot::kLocalMachine, kEnvironment, "TANDREL_HOME", "/home/tandrel");
    fakes.registry.addText(RegistryRoot::kLocalMachine,
                           "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Another", "DisplayName",
                           "Another");
    fakes.registry.addText(RegistryRoot::kCurrentUser, "Software\\Other", "Name", "value");
}

void SampleProduct::runProgram(MemoryFileSystem& files, const std::string& commandLine) {
    if (commandLine.find("hello-setup") != std::string::npos) {
        files.addFile("/opt/tandrel/samples/hello-setup", "a setup");
    }
}
