#include "ui/external_uninstall_page.h"

#include <memory>

#include "base/text_functions.h"
#include "contracts/page_actions.h"
#include "contracts/system_operations.h"
#include "description/expressions.h"
#include "description/pxml.h"
#include "ui/page_visit.h"

ExternalUninstallPage::ExternalUninstallPage(const PXML& description, Expressions& expressions,
                                             PageActions& actions, SystemOperations& system)
    : description_(description), expressions_(expressions), actions_(actions), system_(system) {}

void ExternalUninstallPage::enter(PageVisit& visit) {
    if (visit.page.condition == nullptr) {
        uninstallAll(visit);
    }
    if (visit.page.condition->evaluate(&system_, &visit.ui) == 0) {
        visit.hold();
    }
    visit.shown = true;
}

void ExternalUninstallPage::uninstallAll(PageVisit& visit) {
    const auto condition = std::make_shared<ExternalInstallationCondition>();
    visit.page.condition = condition;
    bool isHeld = false;
    std::vector<std::int32_t> children;
    description_.listChildren(visit.page.node, children);
    for (const std::int32_t node : children) {
        if (!OUtils::equalsIgnoreCase(description_.getName(node), "ExternalLegacyApplication") ||
            expressions_.evaluateCondition(description_.getAttribute(node, "Condition")) == 0) {
            continue;
        }
        const Application application = read(node);
        condition->setIn32BitView(application.in32BitView);
        for (const std::string& name : findInstalled(application)) {
            if (!isHeld) {
                visit.hold();
                isHeld = true;
            }
            condition->add(name.c_str());
            uninstall(name, application, visit);
        }
    }
}

ExternalUninstallPage::Application ExternalUninstallPage::read(std::int32_t node) {
    Application application;
    application.name = description_.getText(node);
    const char* publisher = description_.getAttribute(node, "Publisher");
    application.publisher = publisher == nullptr ? "" : publisher;
    application.arguments = expand(description_.getAttribute(node, "Arguments"));
    std::vector<std::string> details;
    OUtils::splitText(description_.getAttribute(node, "Details"), ';', details);
    for (const std::string& word : details) {
        application.isPartOfName |= OUtils::equalsIgnoreCase(word, "substring");
        application.in32BitView |= OUtils::equalsIgnoreCase(word, "x86");
    }
    return application;
}

std::string ExternalUninstallPage::expand(const char* text) {
    const int size = expressions_.expandVariables(text, nullptr, 0, false);
    if (size <= 0) {
        return std::string();
    }
    std::string expanded(static_cast<std::size_t>(size), '\0');
    expressions_.expandVariables(text, expanded.data(), size, false);
    expanded.pop_back();
    return expanded;
}

std::vector<std::string> ExternalUninstallPage::findInstalled(const Application& application) {
    const std::uint32_t flags = application.in32BitView ? kEntryIn32BitView : 0U;
    std::vector<std::string> names;
    if (application.name == nullptr) {
        return names;
    }
    if (application.isPartOfName) {
        names = system_.findEntriesByPublisher(application.name, application.publisher, flags);
    } else if (system_.findUninstallEntry(application.name, flags)) {
        names.emplace_back(application.name);
    }
    return names;
}

void ExternalUninstallPage::uninstall(const std::string& name, const Application& application,
                                      PageVisit& visit) {
    visit.ui.addFileLine(("Uninstalling \"" + name + "\" ...").c_str(), true);
    const char* arguments = application.arguments.empty() ? nullptr : application.arguments.c_str();
    actions_.uninstallApplication(name.c_str(), arguments, application.in32BitView, true, &visit.ui);
}
