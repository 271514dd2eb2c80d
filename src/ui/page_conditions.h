#pragma once

class DialogModel;
class Expressions;
class InstallerUI;
class SystemOperations;
struct DialogDesc;

// Whether pages are there for the user, and whether they let the user go on.
class PageConditions {
public:
    // Everything is borrowed.
    PageConditions(DialogModel& dialogs, Expressions& expressions, SystemOperations& system);

    // By the page's condition; one that can't be evaluated counts as true, and so does a missing page.
    bool isVisible(int dialog, int sub);
    // Evaluates the page's gate; a page without one is open.
    bool isOpen(DialogDesc& page, InstallerUI* ui);

private:
    DialogModel& dialogs_;
    Expressions& expressions_;
    SystemOperations& system_;
};
