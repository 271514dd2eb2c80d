#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "description/dialog_model.h"
#include "ui/gui/images/image.h"
#include "ui/gui/page_host.h"

class PagePictures;
class TaskList;

// An element of a page in the window.
struct PageElement {
    const DialogElementDesc* description = nullptr;
    ControlId control = 0;  // 0 for a picture that hasn't been shown yet
    Place place;
    Image picture;  // of such a picture
};

// The elements of one page. What can't be had, such as a picture that isn't in the package, isn't there.
class PageElements {
public:
    PageElements(PageHost& host, PagePictures& pictures, TaskList& tasks)
        : host_(host), pictures_(pictures), tasks_(tasks) {}
    ~PageElements() { clear(); }
    PageElements(const PageElements&) = delete;
    PageElements& operator=(const PageElements&) = delete;

    // Makes the elements of the page, in the order of the description; each is shown as its condition says.
    void build(int dialog, int sub);
    // Takes over an element of another page.
    void keep(PageElement element);
    // Takes over all elements of another page.
    void keepAllOf(PageElements& other);
    void clear();

    // Shows those with a condition as it says.
    void refresh();
    void showAll(bool show);
    // The control of the first element with this name and one of these kinds; 0 when there is none.
    ControlId find(std::string_view name, std::initializer_list<DialogElementKind> kinds) const;
    // Takes the first element of this name off the list, with its control.
    std::optional<PageElement> take(std::string_view name);
    // The first text, which says what the page is about.
    std::string_view firstText() const;

private:
    using Maker = bool (PageElements::*)(PageElement& element);
    struct KindMaker;

    void add(const DialogElementDesc& description);
    // Each makes one kind; false when there is nothing to show.
    std::string shownText(const PageElement& element) const;
    bool makeText(PageElement& element);
    template <ControlKind kind>
    bool makePlain(PageElement& element);
    bool makeRichText(PageElement& element);
    bool makeHtml(PageElement& element);
    bool makePlainText(PageElement& element);
    bool makeTaskList(PageElement& element);
    bool makeImage(PageElement& element);
    bool makeSlide(PageElement& element);

    bool addControl(PageElement& element, ControlKind kind, std::string_view text = {});
    // False for a document that the package lacks.
    bool addDocument(PageElement& element, ControlKind kind, std::string& outDocument);
    bool takePicture(PageElement& element, std::string_view resource);
    void show(PageElement& element, bool show);
    void showPicture(PageElement& element);

    PageHost& host_;
    PagePictures& pictures_;
    TaskList& tasks_;
    std::vector<PageElement> elements_;
    int dialog_ = -1;
    int sub_ = -1;
};
