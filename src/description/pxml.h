#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class PStream;
namespace platform {
class FileSystem;
}

// Texts that stay where they are until the arena is destroyed.
class PXMLArena {
public:
    // A copy, owned by the arena.
    std::string_view add(std::string_view text);
    // Room for `size` bytes, uninitialised; giveBack frees what of the last reservation wasn't needed.
    char* reserve(std::size_t size);
    void giveBack(std::size_t size) { used_ -= size; }

private:
    std::vector<std::unique_ptr<char[]>> blocks_;
    std::size_t used_ = 0;
    std::size_t capacity_ = 0;
};

// Texts belong to the document and stay valid as long as it lives, also after a replacement.
struct PXMLAttribute {
    std::string_view name;
    std::optional<std::string_view> value;  // missing only where setAttribute put nothing
};

struct PXMLNode {
    std::vector<PXMLAttribute> attributes;  // in document order
    std::optional<std::string_view> text;   // decoded; missing where no end tag supplied any
    std::string_view name;
    std::int32_t index = -1;   // its own place in the table
    std::int32_t parent = -1;  // -1 for a top-level element
    // In bytes; 1 for the empty text of a self-closing element, an oddity that is kept.
    std::int32_t textLength = 0;
};

// Where an element stands in the text that it was read from, in bytes: from the `<` of its tag to behind the
// `>` that closes it.
struct PXMLSpan {
    static constexpr std::size_t kNoEnd = static_cast<std::size_t>(-1);

    std::size_t begin = 0;
    std::size_t end = kNoEnd;  // this when the text is over before
};

// A small, forgiving reader and writer of a subset of XML: one flat table of elements in the order of their
// opening tags, addressed by index. Nodes are only ever appended, so an index stays valid. There is no syntax
// error: what can be read is kept, the rest is dropped. Bytes are not transcoded.
//
// Element names compare byte for byte, attribute names without regard to ASCII case. A result of -1 means
// none. All lookups are indexed; nesting, names and texts of any size are handled without recursion. One
// thread only.
class PXML {
public:
    PXML() = default;
    PXML(const PXML&) = delete;
    PXML& operator=(const PXML&) = delete;
    virtual ~PXML() = default;

    // 0, the stream's error code when the file can't be opened, or as loadStream.
    int loadFile(std::string_view fileName, platform::FileSystem& files);
    // Opens the stream unless it is open, reads as many bytes as its size says in one call, closes and
    // parses. 0; 1 when it can't be opened; the stream's error code when it can't be read; -3 when bytes are
    // missing.
    int loadStream(PStream& stream);
    // Appends the elements of the first top-level element to the table, and to `outSpans`, if given, where
    // each of them stands. The text ends at its first zero byte.
    void parseText(std::string_view text, std::vector<PXMLSpan>* outSpans = nullptr);

    // Writes all elements, with the line ends of the platform. 0; -1 when the file can't be created; 1 when
    // it can't be written, and then it is left as far as it got. The document must be at most a few hundred
    // levels deep to give a file of sensible size, since each level indents by one more blank.
    int saveFile(std::string_view fileName, platform::FileSystem& files) const;
    // The same with these line ends. Opens the stream unless it is open (1 when that fails), closes it at the
    // end.
    int saveStream(PStream& stream, std::string_view lineEnd = "\n") const;

    std::int32_t getNodeCount() const { return static_cast<std::int32_t>(nodes_.size()); }
    // Null for a bad index. The reference is good until a node is appended; its texts stay valid.
    const PXMLNode* getNode(std::int32_t node) const;
    // Nothing for a bad index, and where there is no text.
    std::optional<std::string_view> getText(std::int32_t node) const;
    // Empty for a bad index.
    std::string_view getName(std::int32_t node) const;

    // The first index above `after` with that name, at any depth.
    std::int32_t findByName(std::string_view name, std::int32_t after = -1) const;
    // The first index above `after` with that name and that parent (-1: top level).
    std::int32_t findChild(std::int32_t parent, std::string_view name, std::int32_t after = -1) const;
    // Looks the components of a path (separated by `/`, one leading `/` skipped) up from the top, or from the
    // level of `start` when that is a node; only nodes above `start` count. A component that doesn't exist is
    // passed over, and only the last one decides the result. An empty component matches nothing. Nodes found
    // on the way are appended to `trace` if given.
    std::int32_t findPath(std::string_view path, std::int32_t start = -1,
                          std::vector<std::int32_t>* trace = nullptr) const;
    // Follows a path from `node` down, each time the first child of that name. A component that doesn't exist
    // gives -1, and so does an empty path; a trailing `/` is ignored.
    std::int32_t findRelative(std::int32_t node, std::string_view path) const;
    // Appends all direct children in document order; -1 lists the top level.
    void listChildren(std::int32_t parent, std::vector<std::int32_t>& outNodes) const;
    // The same as a list of its own.
    std::vector<std::int32_t> childrenOf(std::int32_t parent) const;

    // Of two attributes of one name the later one counts. Nothing when there is no such node or attribute.
    std::optional<std::string_view> getAttribute(std::int32_t node, std::string_view name) const;
    // Replaces that attribute's value or appends a new attribute. False for a bad index.
    bool setAttribute(std::int32_t node, std::string_view name, std::optional<std::string_view> value);
    bool setAttribute(std::int32_t node, std::string_view name, std::nullptr_t) = delete;  // not a text
    // Walks the path below `parent` (-1: top level), making what is missing; the last component gets `value`
    // as its text, in a new element if `alwaysNew`. Empty components are passed over. Returns
    // the last node of the path; -1 for a bad parent or an empty path.
    std::int32_t addPath(std::int32_t parent, std::string_view path, std::optional<std::string_view> value,
                         bool alwaysNew);
    std::int32_t addPath(std::int32_t parent, std::string_view path, std::nullptr_t, bool alwaysNew) = delete;

    // Visits a node and all below it, or all below it alone, in document order, until the hook gives a result
    // other than 0, which is returned. The visited indices are appended to `trace`. 0 for a bad index.
    int walkFrom(std::int32_t node, std::vector<std::int32_t>& trace);
    int walkChildren(std::int32_t node, std::vector<std::int32_t>& trace);

protected:
    // Called by the walks; `ancestor` is the node that the walk began at, `depth` counts from 0 there.
    virtual int onVisit(std::int32_t ancestor, std::int32_t node, std::int32_t depth,
                        std::vector<std::int32_t>& trace);

private:
    friend class PXMLParser;
    friend class PXMLWriter;

    // What the table knows about a node beside its record. Chains end with -1.
    struct Links {
        std::int32_t firstChild = -1;
        std::int32_t lastChild = -1;
        std::int32_t nextSibling = -1;
        std::int32_t nameId = -1;
    };
    struct ChildKey {
        std::int32_t parent;
        std::int32_t nameId;
        bool operator==(const ChildKey&) const = default;
    };
    struct ChildKeyHash {
        std::size_t operator()(const ChildKey& key) const;
    };
    using Indices = std::vector<std::int32_t>;  // ascending

    bool isNode(std::int32_t node) const { return node >= 0 && node < getNodeCount(); }
    std::int32_t appendNode(std::int32_t parent, std::string_view name);
    std::int32_t nameIdOf(std::string_view name) const;
    std::int32_t addName(std::string_view name);
    PXMLAttribute* findAttribute(std::int32_t node, std::string_view name);
    std::optional<std::string_view> keep(std::optional<std::string_view> text);
    void setText(std::int32_t node, std::optional<std::string_view> text);
    int walk(std::int32_t root, bool withRoot, std::vector<std::int32_t>& trace);

    PXMLArena arena_;
    std::vector<PXMLNode> nodes_;
    std::vector<Links> links_;  // links_[0] belongs to the top level, links_[n + 1] to node n
    std::unordered_map<std::string_view, std::int32_t> nameIds_;
    std::vector<Indices> byName_;
    std::unordered_map<ChildKey, Indices, ChildKeyHash> children_;
};
