#include "checking/grammar.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "base/text_functions.h"

namespace grammar {

namespace {

using enum Text;

// What fits where names, values and conditions are kept.
constexpr std::uint32_t kName = 199;
constexpr std::uint32_t kValue = 1023;
constexpr std::uint32_t kPath = 1559;
constexpr std::uint32_t kCondition = 511;

constexpr std::string_view kRoot = "TandrelGroupInstallation";
constexpr std::string_view kPages = "Dialogs UninstallDialogs SubDialogs";
// What can hold actions. A page can, too.
constexpr std::string_view kContainers = "AdditionalInstall PostInstall PreUninstall (container) (page)";

constexpr ElementRule kElementRules[] = {
    {kRoot, "", kNone, 0, true},
    {"ProductDesc", kRoot, kNone, 0, true},
    {"Fullname", "ProductDesc", kRequired, kValue, true},
    {"Title", "ProductDesc", kRequired, kValue, true},
    {"MajorVersion", "ProductDesc", kRequired, kValue, true},
    {"MinorVersion", "ProductDesc", kRequired, kValue, true},
    {"MinestVersion", "ProductDesc", kRequired, kValue, true},
    {"Website", "ProductDesc", kRequired, kValue, true},
    {"Supportemail", "ProductDesc", kRequired, kValue, true},
    {"InstallHelpURL", "ProductDesc", kRequired, kValue, true},
    {"Publisher", "ProductDesc", kRequired, kValue, true},
    {"Copyright", "ProductDesc", kRequired, kValue, true},
    {"Icon", "ProductDesc", kRequired, 258, true},
    {"Banner", "ProductDesc", kRequired, kName, true},
    {"UninstallBanner", "ProductDesc", kRequired, kName, true},
    {"LegacyApplication", "ProductDesc", kRequired, 0, false},
    {"ExternalLegacyApplication", "ProductDesc (page)", kRequired, 0, false},
    {"InstallerControlVariables", kRoot, kNone, 0, true},
    {kControlVariable, "InstallerControlVariables", kRequired, kName, true},
    {"InstallerExcludeVariables", kRoot, kNone, 0, true},
    {kExcludedVariable, "InstallerExcludeVariables", kRequired, 0, false},
    {"DefValues", kRoot, kNone, 0, true},
    {"Value", "DefValues", kOptional, 0, false},
    {"Dialogs", kRoot, kNone, 0, true},
    {"UninstallDialogs", kRoot, kNone, 0, true},
    {kPage, kPages, kNone, 0, false},
    {"TaskList", kPage, kNone, 0, true},
    {kTask, "TaskList", kNone, 0, false},
    {"SubDialogs", kPage, kNone, 0, true},
    {kPageElement, kPage, kOptional, 0, false},
    {"Field", kPage, kRequired, kName, false},
    {"Button", kPage, kRequired, kName, false},
    {"Trigger", kPage, kNone, 0, false},
    {"TestApp", kPage, kRequired, 0, false},
    {"TerminateApp", kPage, kRequired, 0, false},
    {"TerminateSequence", kPage, kRequired, 0, false},
    {"ColourTheme", kRoot, kNone, 0, true},
    {"Words", kRoot, kNone, 0, true},
    {"Word", "Words", kRequired, kCondition, false},
    {kColour, "ColourTheme", kRequired, 0, false},
    {"CustomGroup", "ColourTheme", kRequired, 0, false},
    {"Installation", kRoot, kNone, 0, true},
    {"Uninstall", "Installation", kNone, 0, true},
    {"InstallLogFile", "Uninstall", kRequired, kPath, true},
    {"InstallBackupFile", "Uninstall", kRequired, kPath, true},
    {"UninstallCmd", "Uninstall", kRequired, kPath, true},
    {"UninstallXmlFile", "Uninstall", kRequired, kPath, true},
    {"LegacyInstallLogFile", "Uninstall", kRequired, kPath, false},
    {"UninstallOverrides", "Installation", kNone, 0, false},
    {"Variable", "UninstallOverrides", kRequired, 0, false},
    {"InstallType", kAnywhere, kNone, 0, false},
    {"Desc", "InstallType", kRequired, 198, true},
    {"FileSet", kAnywhere, kNone, 0, false},
    {"FN", "FileSet", kRequired, 0, false},
    {"Tree", "FileSet", kNone, 0, false},
    {"Environment", kAnywhere, kNone, 0, false},
    {"Replace", "Environment", kRequired, 0, false},
    {"Append", "Environment", kRequired, 0, false},
    {"Insert", "Environment", kRequired, 0, false},
    {"IniFiles", kAnywhere, kNone, 0, false},
    {"Add@IniFiles", "IniFiles", kRequired, 0, false},
    {"ModifyFiles", kAnywhere, kNone, 0, false},
    {"File", "ModifyFiles", kRequired, 0, false},
    {"Shortcuts", kAnywhere, kNone, 0, false},
    {"Add@Shortcuts", "Shortcuts", kRequired, 0, false},
    {"Firewall", kAnywhere, kNone, 0, true},
    {"Port", "Firewall", kRequired, 0, false},
    {"Application", "Firewall", kRequired, 0, false},
    {"AdditionalInstall", kAnywhere, kNone, 0, false},
    {"PostInstall", kAnywhere, kNone, 0, false},
    {"PreUninstall", kAnywhere, kNone, 0, false},
    {kContainer, "TandrelGroupInstallation Installation", kNone, 0, false},
    {"OpenDocument", kContainers, kRequired, 0, false},
    {"OpenURL", kContainers, kRequired, 0, false},
    {"RunProgram", kContainers, kRequired, 0, false},
    {"CopyFile", kContainers, kRequired, 0, false},
    {"CreateFile", kContainers, kRequired, 0, false},
    {"RemoveFile", kContainers, kRequired, 0, false},
    {"RemoveDir", kContainers, kRequired, 0, false},
    {"Registry", kContainers, kNone, 0, false},
    {"AddValue", "Registry", kRequired, 0, false},
    {"AddKey", "Registry", kNone, 0, false},
    {"RemoveValue", "Registry", kNone, 0, false},
    {"RemoveKey", "Registry", kNone, 0, false},
    {"UninstallWildcards", kAnywhere, kNone, 0, true},
    {kPattern, "UninstallWildcards", kRequired, 0, false},
};

constexpr std::string_view kPlaced = "(element) Field Button";
constexpr std::string_view kActions =
    "OpenDocument OpenURL RunProgram CopyFile CreateFile RemoveFile RemoveDir Registry";
constexpr std::string_view kKeys = "AddValue AddKey RemoveValue RemoveKey";

constexpr AttributeRule kAttributeRules[] = {
    {"ExternalLegacyApplication Value UninstallOverrides Variable TestApp TerminateApp TerminateSequence "
     "(colour) "
     "CustomGroup Environment Replace Append Insert IniFiles Add@IniFiles ModifyFiles File Shortcuts "
     "Add@Shortcuts "
     "Firewall Port Application AdditionalInstall PostInstall PreUninstall (container) UninstallWildcards "
     "(pattern)",
     "Condition", false, 0, ""},
    {kActions, "Condition", false, 0, ""},
    {kKeys, "Condition", false, 0, ""},
    {"FileSet FN Tree", "Condition", false, 510, ""},
    {"(page) (element) Field Button Trigger", "Condition", false, kCondition, ""},
    {"ExternalLegacyApplication", "Publisher", false, 0, ""},
    {"ExternalLegacyApplication", "Details", false, 0, "details of external products"},
    {"ExternalLegacyApplication", "Arguments", false, 0, ""},
    {"LegacyInstallLogFile", "AppName", true, 0, ""},
    {"(excluded variable)", "ExcludeFrom", false, 0, "words of ExcludeFrom"},
    {"Value", "Name", true, kValue, ""},
    {"Value", "DataType", true, 0, "data types of default values"},
    {"Value", "Default", false, kPath, ""},
    {"Value", "UseOld", false, 0, ""},
    {"Value", "Recalculate", false, 0, ""},
    {"Value", "RegPlace", false, 0, "hives of the registry"},
    {"Value", "RegKey", false, 0, ""},
    {"Value", "PreferredKey", false, 0, ""},
    {"Value", "AppName", false, 0, ""},
    {"Value TestApp TerminateApp", "Directory", false, 0, ""},
    {"Variable", "AppList", false, 0, ""},
    {"Variable", "From", false, 0, ""},
    {"InstallType", "Name", false, 198, ""},
    {"InstallType", "EditFileSets", false, 0, ""},
    {"InstallType", "Default", false, 0, ""},
    {"FileSet", "Name", true, 198, ""},
    {"FileSet", "Desc", false, 1022, ""},
    {"FN", "Alias", false, 258, ""},
    {"FN", "Dest", false, 1558, ""},
    {"Tree", "Dest", true, 1558, ""},
    {"Tree", "From", true, 0, ""},
    {"Tree", "Include", false, 0, ""},
    {"Tree", "Exclude", false, 0, ""},
    {"Tree", "KeepModes", false, 0, ""},
    {"FN Tree", "ExpandVarsInFile", false, 0, ""},
    {"FN Tree", "Executable", false, 0, ""},
    {"FN Tree", "OkIfMissing", false, 0, ""},
    {"FN Tree", "StripExeExt", false, 0, ""},
    {"FN Tree", "BackupExisting", false, 0, ""},
    {"(page)", "w", false, 0, ""},
    {"(page)", "h", false, 0, ""},
    {"(page)", "BkgColour", false, 0, ""},
    {"(page)", "FgColour", false, 0, ""},
    {"(page)", "Special", false, 0, "special words of dialogs"},
    {"(page)", "Retain", false, 0, ""},
    {"(task)", "CurrentLabel", false, kCondition, ""},
    {"(task)", "FinishLabel", false, kCondition, ""},
    {"(task)", "UnreachedLabel", false, kCondition, ""},
    {"(task)", "ShowCondition", false, kCondition, ""},
    {"(task)", "EnableCondition", false, kCondition, ""},
    {"(element)", "Name", false, kName, ""},
    {"(element) Button", "x", true, 0, ""},
    {"(element) Button", "y", true, 0, ""},
    {"Field", "x", false, 0, ""},
    {"Field", "y", false, 0, ""},
    {kPlaced, "w", false, 0, ""},
    {kPlaced, "h", false, 0, ""},
    {kPlaced, "HAlign", false, 0, "horizontal alignments"},
    {kPlaced, "VAlign", false, 0, "vertical alignments"},
    {"(element)", "Details", false, kCondition, ""},
    {"(element)", "Format", false, 0, "formats of documents"},
    {"(element)", "ExpandVars", false, 0, ""},
    {"(element) Button", "BkgColour", false, 0, ""},
    {"(element) Button", "FgColour", false, 0, ""},
    {"Field", "Type", true, 0, "types of fields"},
    {"Field", "Label", false, kName, ""},
    {"Field", "Content", false, kCondition, ""},
    {"Field", "Description", false, kCondition, ""},
    {"Field", "Enable", false, kCondition, ""},
    {"Field", "ValidationVariable", false, kCondition, ""},
    {"Field", "LabelColour", false, 0, ""},
    {"Field", "InputBkgColour", false, 0, ""},
    {"Field", "InputFgColour", false, 0, ""},
    {"Field", "ButtonBkgColour", false, 0, ""},
    {"Field", "ButtonFgColour", false, 0, ""},
    {"Field", "InvalidBkgColour", false, 0, ""},
    {"Field", "InvalidFgColour", false, 0, ""},
    {"Button", "Name", false, 0, "names of buttons"},
    {"Button", "EnableCondition", false, kCondition, ""},
    {"Button", "Action", false, kCondition, ""},
    {"Button", "DialogShift", false, 0, ""},
    {"Button", "LinkStyle", false, 0, ""},
    {"Button", "Disableable", false, 0, ""},
    {"Button", "Default", false, 0, ""},
    {"Button", "ActiveBkgColour", false, 0, ""},
    {"Button", "ActiveFgColour", false, 0, ""},
    {"Trigger", "EvaluateOn", true, 0, "moments of triggers"},
    {"Trigger", "Type", false, 0, "types of triggers"},
    {"Trigger", "Variable", false, kValue, ""},
    {"Trigger", "Value", false, 2047, ""},
    {"TerminateApp", "Service", false, 0, "words of Service"},
    {"CustomGroup", "Name", true, 0, ""},
    {"Word", "Name", true, 0, "words of the wizard"},
    {"Replace Append Insert", "VarName", true, 0, ""},
    {"Replace Append Insert Add@IniFiles", "IsPath", false, 0, ""},
    {"Add@IniFiles", "FileName", true, 0, ""},
    {"Add@IniFiles", "Section", true, 0, ""},
    {"Add@IniFiles", "Key", true, 0, ""},
    {"Add@IniFiles", "BeforeKey", false, 0, ""},
    {"Add@IniFiles", "IgnoreErrors", false, 0, ""},
    {"Add@Shortcuts", "Type", true, 0, "types of shortcuts"},
    {"Add@Shortcuts", "Dest", true, 0, ""},
    {"Add@Shortcuts", "Target", false, 0, ""},
    {"Add@Shortcuts", "Arguments", false, 0, ""},
    {"Add@Shortcuts", "Description", false, 0, ""},
    {"Add@Shortcuts", "StartPath", false, 0, ""},
    {"Add@Shortcuts", "IconPath", false, 0, ""},
    {"File", "Command", true, 0, "commands of ModifyFiles"},
    {"File", "Path", true, 0, ""},
    {"Port", "Port", true, 0, ""},
    {"Port", "Protocol", false, 0, "protocols of a port"},
    {"Application", "Target", true, 0, ""},
    {kActions, "Details", false, 0, "details of actions"},
    {kActions, "Log", false, 0, ""},
    {kActions, "ProgressUpdate", false, 0, ""},
    {kActions, "ErrorOutput", false, 0, ""},
    {"RunProgram", "Arguments", false, 0, ""},
    {"RunProgram", "WorkDir", false, 0, ""},
    {"RunProgram", "Wait", false, 0, ""},
    {"RunProgram", "AsRoot", false, 0, ""},
    {"RunProgram", "Asynchronous", false, 0, ""},
    {"CopyFile CreateFile", "Dest", true, 0, ""},
    {"CopyFile CreateFile", "StripExeExt", false, 0, ""},
    {"CopyFile CreateFile", "ExpandVarsInFile", false, 0, ""},
    {"CreateFile", "FileMod", false, 0, ""},
    {kKeys, "Place", true, 0, "hives of the registry"},
    {kKeys, "Path", true, 511, ""},
    {"AddValue RemoveValue", "Value", true, 0, ""},
    {"AddValue", "Type", false, 0, "types of registry values"},
    {kKeys, "Expand", false, 0, ""},
    {kKeys, "Log", false, 0, ""},
    {kKeys, "ActionLog", false, 0, ""},
    {"RemoveKey", "KeyCount", false, 0, ""},
    {"(pattern)", "Dest", true, 0, ""},
    {"(pattern)", "DeleteDirs", false, 0, ""},
};

// The lists whose words are the names of elements.
struct NamedByList {
    std::string_view type;
    std::string_view list;
};
constexpr NamedByList kNamedByList[] = {
    {kControlVariable, "control variables"},
    {kColour, "colours of the theme"},
    {kPageElement, "kinds of elements"},
};

// Lists whose readers compare the words byte for byte.
constexpr std::string_view kExactLists[] = {
    "hives of the registry", "types of shortcuts",       "protocols of a port", "commands of ModifyFiles",
    "details of actions",    "types of registry values", "words of the wizard"};

// Elements that are selected by kind, for which the case of their names doesn't count.
constexpr std::string_view kAnyCase = "Value FN Field Button Trigger (element) (colour) CustomGroup";

// The pseudo-element of the vocabulary that has the attributes of a type.
std::string_view vocabularyElement(std::string_view type) {
    struct Row {
        std::string_view type;
        std::string_view element;
    };
    static constexpr Row kRows[] = {
        {kPage, vocabulary::kEveryDialog},   {kPageElement, vocabulary::kEveryDialogElement},
        {kTask, vocabulary::kEveryTask},     {kExcludedVariable, vocabulary::kEveryExcluded},
        {kColour, vocabulary::kEveryColour}, {kPattern, vocabulary::kEveryPattern},
    };
    const auto* const row = std::ranges::find(kRows, type, &Row::type);
    return row != std::end(kRows) ? row->element : type.substr(0, type.find('@'));
}

std::span<const std::string_view> namesOfType(std::string_view type) {
    const auto* const row = std::ranges::find(kNamedByList, type, &NamedByList::type);
    return row != std::end(kNamedByList) ? wordsOf(row->list) : std::span<const std::string_view>();
}

bool isNamed(const ElementRule& rule, std::string_view name) {
    const auto isSame = [&](std::string_view known) {
        return listsType(kAnyCase, rule.type) ? OUtils::equalsIgnoreCase(known, name) : known == name;
    };
    return nameOf(rule).empty() ? std::ranges::any_of(namesOfType(rule.type), isSame) : isSame(nameOf(rule));
}

const ElementRule& containerRule() {
    return *std::ranges::find(kElementRules, kContainer, &ElementRule::type);
}

bool holdsActions(const PXML& description, std::int32_t node) {
    return std::ranges::any_of(description.childrenOf(node), [&](std::int32_t child) {
        const ElementRule* const rule = elementRule(kContainer, description.getName(child));
        return rule != nullptr && listsType(rule->parents, kContainer);
    });
}

bool isFreelyNamed(const ElementRule& rule) {
    return nameOf(rule).empty() && namesOfType(rule.type).empty() && rule.type != kContainer;
}

}  // namespace

std::span<const ElementRule> elementRules() {
    return kElementRules;
}

std::span<const AttributeRule> attributeRules() {
    return kAttributeRules;
}

std::span<const std::string_view> namesOf(const ElementRule& rule) {
    static const std::vector<std::string_view> kNames = [] {
        std::vector<std::string_view> names;
        std::ranges::transform(kElementRules, std::back_inserter(names), nameOf);
        return names;
    }();
    const std::size_t index = static_cast<std::size_t>(&rule - kElementRules);
    return kNames[index].empty() ? namesOfType(rule.type) : std::span(kNames).subspan(index, 1);
}

std::string_view nameOf(const ElementRule& rule) {
    return rule.type.starts_with('(') ? std::string_view() : rule.type.substr(0, rule.type.find('@'));
}

bool listsType(std::string_view types, std::string_view type) {
    // No name of a type contains a blank but those in parentheses.
    for (std::size_t at = types.find(type); at != std::string_view::npos; at = types.find(type, at + 1)) {
        const std::size_t end = at + type.size();
        if ((at == 0 || types[at - 1] == ' ') && (end == types.size() || types[end] == ' ')) {
            return true;
        }
    }
    return false;
}

std::span<const std::string_view> wordsOf(std::string_view list) {
    const auto* const found = std::ranges::find(vocabulary::kWordLists, list, &vocabulary::WordList::name);
    return found != std::end(vocabulary::kWordLists) ? found->words : std::span<const std::string_view>();
}

bool isExactList(std::string_view list) {
    return std::ranges::find(kExactLists, list) != std::end(kExactLists);
}

const ElementRule* elementRule(std::string_view parent, std::string_view name) {
    const ElementRule* anywhere = nullptr;
    const ElementRule* free = nullptr;
    for (const ElementRule& rule : kElementRules) {
        const bool isHere = parent.empty() ? rule.parents.empty() : listsType(rule.parents, parent);
        if (isHere && isNamed(rule, name)) {
            return &rule;
        }
        if (isHere && free == nullptr && isFreelyNamed(rule)) {
            free = &rule;
        }
        if (rule.parents == kAnywhere && !parent.empty() && isNamed(rule, name)) {
            anywhere = &rule;
        }
    }
    // A page may have the name of a section.
    return free != nullptr ? free : anywhere;
}

std::vector<const AttributeRule*> attributesOf(std::string_view type) {
    std::vector<const AttributeRule*> rules;
    for (const AttributeRule& rule : kAttributeRules) {
        if (listsType(rule.types, type)) {
            rules.push_back(&rule);
        }
    }
    return rules;
}

vocabulary::Kind kindOf(std::string_view type, const AttributeRule& rule) {
    const std::string_view element = vocabularyElement(type);
    const vocabulary::Attribute* first = nullptr;
    for (const vocabulary::Attribute& attribute : vocabulary::kAttributes) {
        if (attribute.name == rule.name) {
            if (attribute.element == element) {
                return attribute.kind;
            }
            first = first == nullptr ? &attribute : first;
        }
    }
    return first == nullptr ? vocabulary::Kind::kText : first->kind;
}

vocabulary::Kind kindOfText(const ElementRule& rule) {
    if (rule.type == kControlVariable || rule.type == kExcludedVariable) {
        return vocabulary::Kind::kVariable;
    }
    if (rule.type == kColour) {
        return vocabulary::Kind::kColour;
    }
    const auto* const element =
        std::ranges::find(vocabulary::kElements, nameOf(rule), &vocabulary::Element::name);
    return element != std::end(vocabulary::kElements) ? element->text : vocabulary::Kind::kText;
}

std::vector<const ElementRule*> typesOf(const PXML& description) {
    std::vector<const ElementRule*> types;
    types.reserve(static_cast<std::size_t>(description.getNodeCount()));
    std::map<std::pair<std::string_view, std::string_view>, const ElementRule*> known;
    for (std::int32_t i = 0; i < description.getNodeCount(); ++i) {
        const PXMLNode& node = *description.getNode(i);
        const ElementRule* const parent =
            node.parent < 0 ? nullptr : types[static_cast<std::size_t>(node.parent)];
        if (node.parent >= 0 && parent == nullptr) {
            types.push_back(nullptr);
            continue;
        }
        const std::string_view parentType = parent == nullptr ? std::string_view() : parent->type;
        const auto [found, isNew] = known.try_emplace({parentType, node.name}, nullptr);
        if (isNew) {
            found->second = elementRule(parentType, node.name);
        }
        const bool isContainer = found->second == nullptr && holdsActions(description, i) &&
                                 listsType(containerRule().parents, parentType);
        types.push_back(isContainer ? &containerRule() : found->second);
    }
    return types;
}

}  // namespace grammar
