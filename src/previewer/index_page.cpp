#include "previewer/index_page.h"

#include <algorithm>
#include <set>

namespace {

constexpr const char* kStyle =
    "body{font:15px/1.45 system-ui,sans-serif;margin:2em;color:#222;background:#fafafa}"
    "h1{font-size:1.5em}h2{margin-top:2em}h3{margin:1.6em 0 .4em}"
    ".row{display:flex;flex-wrap:wrap;gap:1.5em;align-items:flex-start}"
    "figure{margin:0}figcaption{color:#666;font-size:.87em}"
    ".shot{position:relative;display:inline-block;border:1px solid #bbb}"
    ".shot img{display:block;max-width:100%}"
    ".fault{position:absolute;border:2px solid #d00;box-sizing:border-box}"
    "pre{background:#fff;border:1px solid #ddd;padding:.7em;margin:0;max-width:84ch;overflow:auto}"
    ".bad{color:#b00}.good{color:#070}";

std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                const bool isControl = static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\t';
                out += isControl ? ' ' : c;
        }
    }
    return out;
}

std::string paragraph(std::string_view text, std::string_view kind) {
    return "<p class=\"" + std::string(kind) + "\">" + escaped(text) + "</p>\n";
}

std::string percent(int part, int whole) {
    return std::to_string(whole <= 0 ? 0 : part * 100.0 / whole) + "%";
}

std::string countText(int faults) {
    return std::to_string(faults) + (faults == 1 ? " fault" : " faults");
}

std::string frameOf(const LayoutFault& fault, Extent page) {
    return "<span class=\"fault\" style=\"left:" + percent(fault.place.x, page.width) +
           ";top:" + percent(fault.place.y, page.height) +
           ";width:" + percent(fault.place.width, page.width) +
           ";height:" + percent(fault.place.height, page.height) + "\" title=\"" +
           escaped(nameOf(fault.kind) + ": " + fault.text) + "\"></span>";
}

const PageRecord* find(const WalkRecord& record, const std::string& file) {
    const auto found = std::ranges::find(record.pages, file, &PageRecord::file);
    return found == record.pages.end() ? nullptr : &*found;
}

std::string figureOf(const SizeWalk& walk, const PageRecord& page) {
    std::string html = "<figure><div class=\"shot\"><img src=\"" +
                       escaped(walk.directory + "/" + page.file + ".png") + "\" alt=\"" + escaped(page.file) +
                       "\">";
    for (const LayoutFault& fault : page.faults) {
        html += frameOf(fault, page.size);
    }
    html += "</div><figcaption>letters of " + std::to_string(walk.size) + " %</figcaption>\n";
    for (const LayoutFault& fault : page.faults) {
        html += paragraph(nameOf(fault.kind) + ": " + fault.text, "bad");
    }
    for (const std::string& note : page.notes) {
        html += paragraph(note, "note");
    }
    return html + "</figure>\n";
}

// Installation before uninstallation, each in the order of the description.
std::vector<std::string> pagesOf(const AnswerSet& set) {
    std::set<std::string> files;
    for (const ConsolePage& page : set.console) {
        files.insert(page.file);
    }
    for (const SizeWalk& walk : set.windows) {
        for (const PageRecord& page : walk.record.pages) {
            files.insert(page.file);
        }
    }
    return {files.begin(), files.end()};
}

std::string rowOf(const AnswerSet& set, const std::string& file) {
    std::string html = "<h3>" + escaped(file) + "</h3>\n<div class=\"row\">\n";
    for (const SizeWalk& walk : set.windows) {
        if (const PageRecord* const page = find(walk.record, file)) {
            html += figureOf(walk, *page);
        }
    }
    const auto console = std::ranges::find(set.console, file, &ConsolePage::file);
    if (console != set.console.end()) {
        html +=
            "<figure><pre>" + escaped(console->text) + "</pre><figcaption>console</figcaption></figure>\n";
    }
    return html + "</div>\n";
}

std::string sectionOf(const AnswerSet& set) {
    std::string html = "<h2>" + escaped(set.name) + "</h2>\n";
    for (const std::string& end : set.consoleEnds) {
        html += paragraph("Console: " + end, "bad");
    }
    for (const SizeWalk& walk : set.windows) {
        for (const std::string& end : walk.record.ends) {
            html += paragraph("Letters of " + std::to_string(walk.size) + " %: " + end, "bad");
        }
    }
    for (const std::string& file : pagesOf(set)) {
        html += rowOf(set, file);
    }
    return html;
}

std::string imageOf(const std::string& path, const std::string& caption) {
    return "<figure><div class=\"shot\"><img src=\"" + escaped(path) + "\" alt=\"\"></div><figcaption>" +
           escaped(caption) + "</figcaption></figure>\n";
}

std::string changeOf(const ChangedFile& change, std::size_t index) {
    const bool isPicture = change.name.ends_with(".png");
    std::string html = "<h3>" + escaped(change.name);
    switch (change.kind) {
        case ChangedFile::Kind::kNew:
            return html + " is new</h3>\n";
        case ChangedFile::Kind::kGone:
            return html + " is gone</h3>\n";
        case ChangedFile::Kind::kChanged:
            html += " has changed";
            break;
    }
    if (!isPicture || change.changedPixels == 0) {
        return html + "</h3>\n";
    }
    const std::string number = std::to_string(index) + ".png";
    return html + " (" + std::to_string(change.changedPixels) + " pixels)</h3>\n<div class=\"row\">\n" +
           imageOf("compared/earlier-" + number, "earlier") + imageOf(change.name, "now") +
           imageOf("compared/difference-" + number, "difference") + "</div>\n";
}

std::string comparisonOf(const Preview& preview) {
    if (preview.comparedTo.empty()) {
        return {};
    }
    std::string html = "<h2>Compared with " + escaped(preview.comparedTo) + "</h2>\n";
    if (preview.changes.empty()) {
        html += paragraph("Nothing has changed.", "good");
    }
    for (std::size_t i = 0; i < preview.changes.size(); ++i) {
        html += changeOf(preview.changes[i], i);
    }
    return html;
}

}  // namespace

int countFaults(const Preview& preview) {
    std::size_t faults = 0;
    for (const AnswerSet& set : preview.sets) {
        for (const SizeWalk& walk : set.windows) {
            for (const PageRecord& page : walk.record.pages) {
                faults += page.faults.size();
            }
        }
    }
    return static_cast<int>(faults);
}

std::string indexPageOf(const Preview& preview) {
    const int faults = countFaults(preview);
    std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
                       escaped(preview.title) + "</title>\n<style>" + kStyle +
                       "</style>\n</head>\n<body>\n<h1>" + escaped(preview.title) + "</h1>\n";
    html += paragraph(countText(faults) + ": texts that are cut, and what lies on one another or outside",
                      faults == 0 ? "good" : "bad");
    if (!preview.windowNote.empty()) {
        html += paragraph("No pictures: " + preview.windowNote, "bad");
    }
    html += comparisonOf(preview);
    for (const AnswerSet& set : preview.sets) {
        html += sectionOf(set);
    }
    return html + "</body>\n</html>\n";
}
