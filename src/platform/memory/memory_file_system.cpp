#include "platform/memory/memory_file_system.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "base/text_functions.h"

namespace {

enum Kind { kFile, kDirectory, kLink, kDevice };

bool isDrive(std::string_view component) {
    return component.size() == 2 && component[1] == ':';
}

std::vector<std::string> componentsOf(std::string_view path) {
    std::vector<std::string> components;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find_first_of("/\\"), path.size());
        const std::string_view component = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (component == "..") {
            if (!components.empty() && !isDrive(components.back())) {
                components.pop_back();
            }
        } else if (!component.empty() && component != ".") {
            components.emplace_back(component);
        }
    }
    return components;
}

// "C:/a/b" or "/a/b"; the roots are "C:" and "".
std::string resolved(std::string_view path) {
    std::string result;
    for (const std::string& component : componentsOf(path)) {
        if (!(result.empty() && isDrive(component))) {
            result += '/';
        }
        result += component;
    }
    return result;
}

std::string keyOf(const std::string& path) {
    return OUtils::toLowerAscii(path);
}

bool isRoot(const std::string& path) {
    return path.empty() || isDrive(path);
}

std::string parentOf(const std::string& path) {
    const std::size_t separator = path.rfind('/');
    return separator == std::string::npos ? std::string() : path.substr(0, separator);
}

// What a path can mean, and the directory itself.
bool isPlainName(std::string_view name) {
    return !name.empty() && name != ".." && name.find_first_of("/\\") == std::string_view::npos;
}

platform::PathKind pathKindOf(int kind) {
    using platform::PathKind;
    const PathKind kinds[] = {PathKind::kFile, PathKind::kDirectory, PathKind::kLink, PathKind::kOther};
    return kinds[kind];
}

bool isAtOrBelow(const std::string& key, const std::string& top) {
    return key.compare(0, top.size(), top) == 0 && (key.size() == top.size() || key[top.size()] == '/');
}

}  // namespace

// A name, and the file behind it, which may have several.
struct MemoryFileSystem::Node {
    struct Body {
        std::string content;  // of a file; the resolved target of a link
        std::string linkText;
        bool executable = false;
        bool isPrivate = false;
        bool hasDirectoryRights = false;
        bool isMasked = false;
    };

    std::string path;
    int kind = kFile;
    std::shared_ptr<Body> body = std::make_shared<Body>();
    bool isMarked = false;
    std::vector<std::string> rawNames = {};  // of further entries, which no path can mean
};

struct MemoryFileSystem::Fault {
    Operation operation;
    std::string key;  // empty: any path
    int remaining;
    bool lasting;
    int status;
};

// What runBefore asked for.
struct MemoryFileSystem::Event {
    Operation operation;
    std::string key;
    int remaining;
    std::function<void()> action;
};

namespace {

bool mayChange(MemoryFileSystem::Operation operation) {
    using Operation = MemoryFileSystem::Operation;
    return operation != Operation::kRead && operation != Operation::kSeek && operation != Operation::kClose &&
           operation != Operation::kFlush && operation != Operation::kList;
}

}  // namespace

class MemoryFileSystem::OpenFile : public platform::File {
public:
    OpenFile(MemoryFileSystem& owner, NodePtr node, std::uint32_t access)
        : owner_(owner), node_(std::move(node)), access_(access) {
        ++owner_.openFiles_;
    }
    ~OpenFile() override { OpenFile::close(); }

    int read(void* buffer, std::uint32_t size, std::uint32_t& outDone) override;
    int write(const void* buffer, std::uint32_t size, std::uint32_t& outDone) override;
    int seek(std::int64_t distance, platform::Origin origin, std::int64_t& outPosition) override;
    std::int64_t size() override;
    int truncateHere() override;
    int flush() override;
    int setRights(platform::FileRights rights) override;
    int takeRightsOf(std::string_view path) override;
    int makeExecutable() override;
    int close() override;

private:
    // With the lock held: the status with which the operation fails by itself or by injection.
    int begin(Operation operation, const char* text, std::uint32_t neededAccess) {
        if (node_ == nullptr) {
            return kBadHandle;
        }
        const int status =
            owner_.begin(operation, node_->path, text == nullptr ? "" : text + (" " + node_->path));
        return status != kOk ? status : (access_ & neededAccess) != neededAccess ? kAccessDenied : kOk;
    }

    MemoryFileSystem& owner_;
    NodePtr node_;  // null once closed
    std::uint32_t access_;
    std::size_t position_ = 0;
};

int MemoryFileSystem::OpenFile::read(void* buffer, std::uint32_t size, std::uint32_t& outDone) {
    const std::lock_guard lock(owner_.mutex_);
    outDone = 0;
    const int status = begin(Operation::kRead, nullptr, platform::kRead);
    if (status != kOk || position_ >= node_->body->content.size() || size == 0) {
        return status;
    }
    const std::size_t done = std::min<std::size_t>(size, node_->body->content.size() - position_);
    std::memcpy(buffer, node_->body->content.data() + position_, done);
    position_ += done;
    outDone = static_cast<std::uint32_t>(done);
    return kOk;
}

int MemoryFileSystem::OpenFile::write(const void* buffer, std::uint32_t size, std::uint32_t& outDone) {
    const std::lock_guard lock(owner_.mutex_);
    outDone = 0;
    const int status = begin(Operation::kWrite, nullptr, platform::kWrite);
    if (status != kOk || size == 0) {
        return status;
    }
    std::size_t done = size;
    if (owner_.freeSpace_ >= 0) {
        done = std::min<std::size_t>(done, static_cast<std::size_t>(owner_.freeSpace_));
        owner_.freeSpace_ -= static_cast<std::int64_t>(done);
    }
    std::string& content = node_->body->content;
    if (done > 0) {
        content.resize(std::max(content.size(), position_ + done));
        std::memcpy(content.data() + position_, buffer, done);
        position_ += done;
    }
    outDone = static_cast<std::uint32_t>(done);
    return done < size ? kDiskFull : kOk;
}

int MemoryFileSystem::OpenFile::seek(std::int64_t distance, platform::Origin origin,
                                     std::int64_t& outPosition) {
    const std::lock_guard lock(owner_.mutex_);
    const int status = begin(Operation::kSeek, nullptr, 0);
    outPosition = static_cast<std::int64_t>(position_);
    if (status != kOk) {
        return status;
    }
    std::int64_t base = 0;
    if (origin == platform::Origin::kCurrent) {
        base = outPosition;
    } else if (origin == platform::Origin::kEnd) {
        base = static_cast<std::int64_t>(node_->body->content.size());
    }
    if (base + distance < 0) {
        return kAccessDenied;
    }
    outPosition = base + distance;
    position_ = static_cast<std::size_t>(outPosition);
    return kOk;
}

std::int64_t MemoryFileSystem::OpenFile::size() {
    const std::lock_guard lock(owner_.mutex_);
    return node_ == nullptr ? -1 : static_cast<std::int64_t>(node_->body->content.size());
}

int MemoryFileSystem::OpenFile::truncateHere() {
    const std::lock_guard lock(owner_.mutex_);
    const int status = begin(Operation::kTruncate, "truncate", platform::kWrite);
    if (status == kOk) {
        node_->body->content.resize(position_);
    }
    return status;
}

int MemoryFileSystem::OpenFile::flush() {
    const std::lock_guard lock(owner_.mutex_);
    return begin(Operation::kFlush, "flush", 0);
}

int MemoryFileSystem::OpenFile::setRights(platform::FileRights rights) {
    const std::lock_guard lock(owner_.mutex_);
    const int status = begin(Operation::kSetRights, nullptr, 0);
    if (status == kOk) {
        node_->body->isMasked = false;
        node_->body->isPrivate = rights == platform::FileRights::kPrivate;
        node_->body->executable = rights == platform::FileRights::kProgram;
    }
    return status;
}

int MemoryFileSystem::OpenFile::takeRightsOf(std::string_view path) {
    const std::lock_guard lock(owner_.mutex_);
    if (node_ == nullptr) {
        return kBadHandle;
    }
    const std::string source = resolved(path);
    const int status =
        owner_.begin(Operation::kCopyRights, node_->path, "copyRights " + source + " -> " + node_->path);
    const NodePtr from = owner_.find(source);
    if (status != kOk || from == nullptr) {
        return status != kOk ? status : kNotFound;
    }
    if (from->kind != kFile) {
        return kAccessDenied;
    }
    node_->body->isMasked = from->body->isMasked;
    node_->body->executable = from->body->executable;
    node_->body->isPrivate = from->body->isPrivate;
    return owner_.readOnlyStatus(source);
}

int MemoryFileSystem::OpenFile::makeExecutable() {
    const std::lock_guard lock(owner_.mutex_);
    const int status = begin(Operation::kMakeExecutable, "makeExecutable", 0);
    if (status == kOk) {
        node_->body->executable = true;
    }
    return status;
}

int MemoryFileSystem::OpenFile::close() {
    const std::lock_guard lock(owner_.mutex_);
    if (node_ == nullptr) {
        return kOk;
    }
    const int status = begin(Operation::kClose, "close", 0);
    node_ = nullptr;
    --owner_.openFiles_;
    return status;
}

// Its node stays what it is when something else takes the path, and nothing is found in it then.
class MemoryFileSystem::OpenDirectory : public platform::Directory {
public:
    OpenDirectory(MemoryFileSystem& owner, NodePtr node) : owner_(owner), node_(std::move(node)) {
        ++owner_.openFiles_;
    }
    ~OpenDirectory() override { --owner_.openFiles_; }

    int list(std::vector<platform::DirectoryEntry>& outEntries) override {
        outEntries.clear();
        return with(".", [&](const std::string&) { return owner_.list(node_->path, outEntries); });
    }
    int listDisk(std::vector<platform::DiskEntry>& outEntries) override {
        outEntries.clear();
        return with(".", [&](const std::string&) { return owner_.listDisk(node_->path, outEntries); });
    }
    int openDirectory(std::string_view name, std::unique_ptr<platform::Directory>& outDirectory) override {
        outDirectory = nullptr;
        return with(name, [&](const std::string& path) { return owner_.openDirectory(path, outDirectory); });
    }
    int removeFile(std::string_view name) override {
        return with(name, [&](const std::string& path) { return owner_.removeFile(path); });
    }
    int removeDirectory(std::string_view name) override {
        return with(name, [&](const std::string& path) { return owner_.removeDirectory(path); });
    }
    int openFile(std::string_view name, std::unique_ptr<platform::File>& outFile) override {
        outFile = nullptr;
        platform::OpenOptions options;
        options.followLinks = false;
        return with(name, [&](const std::string& path) { return owner_.open(path, options, outFile); });
    }
    int takeFileAway(std::string_view name, std::string_view to) override {
        return with(name, [&](const std::string& path) { return owner_.takeFileAway(path, to); });
    }
    int takeDirectoryAway(std::string_view name, std::string_view to) override {
        return with(name, [&](const std::string& path) { return owner_.takeDirectoryAway(path, to); });
    }

private:
    template <typename Operate>
    int with(std::string_view name, Operate operate) {
        const std::lock_guard lock(owner_.mutex_);
        return !isPlainName(name) || !owner_.isPlaceOf(node_)
                   ? kNotFound
                   : operate(node_->path + "/" + std::string(name));
    }

    MemoryFileSystem& owner_;
    NodePtr node_;
};

MemoryFileSystem::MemoryFileSystem() {
    addDirectory(temporaryDirectory_);
}

MemoryFileSystem::~MemoryFileSystem() = default;

void MemoryFileSystem::becomeCopyOf(const MemoryFileSystem& other) {
    const std::scoped_lock lock(mutex_, other.mutex_);
    nodes_.clear();
    std::map<const Node::Body*, std::shared_ptr<Node::Body>> bodies;  // one may have several names
    for (const auto& [key, node] : other.nodes_) {
        const NodePtr copy = std::make_shared<Node>(*node);
        std::shared_ptr<Node::Body>& body = bodies[node->body.get()];
        body = body == nullptr ? std::make_shared<Node::Body>(*node->body) : body;
        copy->body = body;
        nodes_[key] = copy;
    }
    readOnly_ = other.readOnly_;
    freeSpace_ = other.freeSpace_;
    reportedSpace_ = other.reportedSpace_;
    temporaryDirectory_ = other.temporaryDirectory_;
    otherPrivatePlaces_ = other.otherPrivatePlaces_;
    unprotected_ = other.unprotected_;
    volumes_ = other.volumes_;
    removedAtRestart_ = other.removedAtRestart_;
    privateDirectories_ = other.privateDirectories_;
}

void MemoryFileSystem::addFile(std::string_view path, std::string_view content) {
    const std::lock_guard lock(mutex_);
    const NodePtr node = add(resolved(path), kFile);
    node->body = std::make_shared<Node::Body>(*node->body);
    node->body->content = content;
}

void MemoryFileSystem::addDirectory(std::string_view path) {
    const std::lock_guard lock(mutex_);
    add(resolved(path), kDirectory);
}

void MemoryFileSystem::addMarkedDirectory(std::string_view path) {
    const std::lock_guard lock(mutex_);
    add(resolved(path), kDirectory)->isMarked = true;
}

void MemoryFileSystem::addLink(std::string_view path, std::string_view target) {
    const std::lock_guard lock(mutex_);
    nodes_.erase(keyOf(resolved(path)));  // what is open stays what it is
    const std::string name = resolved(path);
    const NodePtr link = add(name, kLink);
    const bool isAbsolute =
        !target.empty() && (isDrive(target.substr(0, 2)) || target.find_first_of("/\\") == 0);
    link->body->content =
        resolved(isAbsolute ? std::string(target) : parentOf(name) + "/" + std::string(target));
    link->body->linkText = target;
}

void MemoryFileSystem::addProgram(std::string_view path, std::string_view content) {
    const std::lock_guard lock(mutex_);
    addFile(path, content);
    find(resolved(path))->body->executable = true;
}

void MemoryFileSystem::addHardLink(std::string_view path, std::string_view file) {
    const std::lock_guard lock(mutex_);
    nodes_.erase(keyOf(resolved(path)));
    add(resolved(path), kFile)->body = find(resolved(file))->body;
}

void MemoryFileSystem::addDevice(std::string_view path) {
    const std::lock_guard lock(mutex_);
    add(resolved(path), kDevice);
}

void MemoryFileSystem::addUnnameable(std::string_view directory, std::string_view name) {
    const std::lock_guard lock(mutex_);
    add(resolved(directory), kDirectory)->rawNames.emplace_back(name);
}

void MemoryFileSystem::makePrivate(std::string_view path) {
    const std::lock_guard lock(mutex_);
    find(resolved(path))->body->isPrivate = true;
}

bool MemoryFileSystem::hasFile(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    const NodePtr node = find(resolved(path));
    return node != nullptr && node->kind == kFile;
}

bool MemoryFileSystem::hasDirectory(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    const NodePtr node = find(resolved(path));
    return node != nullptr && node->kind == kDirectory;
}

std::string MemoryFileSystem::content(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    const NodePtr node = findTarget(resolved(path));
    return node != nullptr && node->kind == kFile ? node->body->content : std::string();
}

std::string MemoryFileSystem::linkTarget(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    const NodePtr node = find(resolved(path));
    return node != nullptr && node->kind == kLink ? node->body->content : std::string();
}

bool MemoryFileSystem::isExecutable(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    const NodePtr node = findTarget(resolved(path));
    return node != nullptr && node->body->executable;
}

bool MemoryFileSystem::isPrivate(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    const NodePtr node = find(resolved(path));
    return node != nullptr && node->body->isPrivate;
}

bool MemoryFileSystem::isMasked(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    const NodePtr node = find(resolved(path));
    return node != nullptr && node->body->isMasked;
}

bool MemoryFileSystem::hasDirectoryRights(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    const NodePtr node = find(resolved(path));
    return node != nullptr && node->body->hasDirectoryRights;
}

std::vector<std::string> MemoryFileSystem::allFiles() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> files;
    for (const auto& [key, node] : nodes_) {
        if (node->kind != kDirectory) {
            files.push_back(node->path);
        }
    }
    return files;
}

std::map<std::string, std::string> MemoryFileSystem::everything() const {
    const std::lock_guard lock(mutex_);
    std::map<std::string, std::string> all;
    for (const auto& [key, node] : nodes_) {
        std::string& text = all[node->path];
        if (node->kind == kFile) {
            text = std::string("file") + (node->body->executable ? " program" : "") +
                   (node->body->isPrivate ? " private" : "") + ": " + node->body->content;
        } else {
            text = node->kind == kLink        ? "link to " + node->body->content
                   : node->kind == kDirectory ? "directory"
                                              : "device";
        }
    }
    return all;
}

int MemoryFileSystem::openFileCount() const {
    const std::lock_guard lock(mutex_);
    return openFiles_;
}

void MemoryFileSystem::failAt(Operation operation, std::string_view path, int n, int status) {
    const std::lock_guard lock(mutex_);
    faults_.push_back({operation, keyOf(resolved(path)), n, false, status});
}

void MemoryFileSystem::failFrom(Operation operation, std::string_view path, int n, int status) {
    const std::lock_guard lock(mutex_);
    faults_.push_back({operation, keyOf(resolved(path)), n, true, status});
}

void MemoryFileSystem::setFreeSpace(std::int64_t bytes) {
    const std::lock_guard lock(mutex_);
    freeSpace_ = bytes;
}

void MemoryFileSystem::setReadOnly(std::string_view path, int status) {
    const std::lock_guard lock(mutex_);
    readOnly_[keyOf(resolved(path))] = status;
}

void MemoryFileSystem::runBefore(Operation operation, std::string_view path, int n,
                                 std::function<void()> action) {
    const std::lock_guard lock(mutex_);
    events_.push_back({operation, keyOf(resolved(path)), n, std::move(action)});
}

void MemoryFileSystem::clearFaults() {
    const std::lock_guard lock(mutex_);
    faults_.clear();
    events_.clear();
    readOnly_.clear();
    freeSpace_ = -1;
    reportedSpace_.clear();
}

std::vector<std::string> MemoryFileSystem::operations() const {
    const std::lock_guard lock(mutex_);
    return operations_;
}

bool MemoryFileSystem::didOperation(std::string_view text) const {
    const std::lock_guard lock(mutex_);
    return std::find(operations_.begin(), operations_.end(), text) != operations_.end();
}

void MemoryFileSystem::clearOperations() {
    const std::lock_guard lock(mutex_);
    operations_.clear();
    counts_.clear();
}

int MemoryFileSystem::count(Operation operation) const {
    const std::lock_guard lock(mutex_);
    const auto found = counts_.find(operation);
    return found == counts_.end() ? 0 : found->second;
}

void MemoryFileSystem::setTemporaryDirectory(std::string_view path) {
    const std::lock_guard lock(mutex_);
    temporaryDirectory_ = path;
    if (!path.empty()) {
        add(resolved(path), kDirectory);
    }
}

// An action may do the same operation again, or ask for more actions.
void MemoryFileSystem::runActions(Operation operation, const std::string& path) {
    const std::string key = keyOf(path);
    for (std::size_t i = 0; i < events_.size(); ++i) {
        if (events_[i].operation == operation && events_[i].key == key && --events_[i].remaining == 0) {
            const std::function<void()> action = events_[i].action;
            action();
        }
    }
}

// Records and counts the operation and gives the status of an injected failure.
void MemoryFileSystem::watchChanges(std::function<void()> watcher) {
    const std::lock_guard lock(mutex_);
    watcher_ = std::move(watcher);
}

int MemoryFileSystem::begin(Operation operation, const std::string& path, const std::string& text) {
    runActions(operation, path);
    if (watcher_ && mayChange(operation)) {
        watcher_();
    }
    ++counts_[operation];
    if (!text.empty()) {
        operations_.push_back(text);
    }
    const std::string key = keyOf(path);
    int status = kOk;
    for (Fault& fault : faults_) {
        if (fault.operation != operation || (!fault.key.empty() && fault.key != key)) {
            continue;
        }
        if (fault.remaining > 0) {
            --fault.remaining;
        } else if (!fault.lasting) {
            continue;
        }
        if (fault.remaining == 0 && status == kOk) {
            status = fault.status;
        }
        if (fault.remaining == 0 && !fault.lasting) {
            fault.remaining = -1;
        }
    }
    return status;
}

int MemoryFileSystem::readOnlyStatus(const std::string& path) const {
    const std::string key = keyOf(path);
    for (const auto& [top, status] : readOnly_) {
        if (isAtOrBelow(key, top)) {
            return status;
        }
    }
    return kOk;
}

int MemoryFileSystem::refusalOfChange(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    return readOnlyStatus(resolved(path));
}

std::string MemoryFileSystem::resolvedPath(std::string_view path) {
    return resolved(path);
}

MemoryFileSystem::NodePtr MemoryFileSystem::find(const std::string& path) const {
    if (isRoot(path)) {
        NodePtr root = std::make_shared<Node>();
        root->path = path;
        root->kind = kDirectory;
        return root;
    }
    const auto found = nodes_.find(keyOf(path));
    return found == nodes_.end() ? nullptr : found->second;
}

MemoryFileSystem::NodePtr MemoryFileSystem::findTarget(const std::string& path) const {
    NodePtr node = find(path);
    for (int depth = 0; node != nullptr && node->kind == kLink && depth < 40; ++depth) {
        node = find(node->body->content);
    }
    return node != nullptr && node->kind == kLink ? nullptr : node;
}

// Makes the node and its parents, or gives the one that is there another kind.
MemoryFileSystem::NodePtr MemoryFileSystem::add(const std::string& path, int kind) {
    if (isRoot(path)) {
        return find(path);
    }
    if (const std::string parent = parentOf(path); find(parent) == nullptr) {
        add(parent, kDirectory);
    }
    NodePtr& node = nodes_[keyOf(path)];
    if (node == nullptr) {
        node = std::make_shared<Node>();
        node->path = path;
    }
    node->kind = kind;
    return node;
}

int MemoryFileSystem::parentStatus(const std::string& path) const {
    const NodePtr parent = findTarget(parentOf(path));
    return parent != nullptr && parent->kind == kDirectory ? kOk : kNotFound;
}

int MemoryFileSystem::open(std::string_view path, const platform::OpenOptions& options,
                           std::unique_ptr<platform::File>& outFile) {
    outFile = nullptr;  // closing an earlier file takes the lock itself
    const std::lock_guard lock(mutex_);
    const std::string name = resolved(path);
    NodePtr node;
    int status = begin(Operation::kOpen, name, "open " + name);
    if (status == kOk) {
        status = openNode(name, options, node);
    }
    if (status == kOk) {
        outFile = std::make_unique<OpenFile>(*this, node, options.access);
    }
    return status;
}

int MemoryFileSystem::openNode(const std::string& path, const platform::OpenOptions& options,
                               NodePtr& outNode) {
    using platform::Disposition;
    const bool onlyNew =
        options.disposition == Disposition::kCreateNew || options.disposition == Disposition::kCreatePrivate;
    if (onlyNew && find(path) != nullptr) {
        return kExists;
    }
    const NodePtr link = find(path);
    if (link != nullptr && (link->kind == kDevice || (link->kind == kLink && !options.followLinks))) {
        return kAccessDenied;
    }
    const std::string target = link != nullptr && link->kind == kLink ? link->body->content : path;
    outNode = findTarget(path);
    if (outNode == nullptr && options.disposition == Disposition::kOpenExisting) {
        return kNotFound;
    }
    if (outNode != nullptr && outNode->kind == kDirectory) {
        return kIsDirectory;
    }
    const bool writes = outNode == nullptr || (options.access & platform::kWrite) != 0;
    if (const int status = writes ? readOnlyStatus(target) : kOk; status != kOk) {
        return status;
    }
    if (outNode == nullptr) {
        if (const int status = parentStatus(target); status != kOk) {
            return status;
        }
        outNode = add(target, kFile);
        outNode->body->isPrivate = options.disposition == Disposition::kCreatePrivate;
        outNode->body->isMasked = !outNode->body->isPrivate;
    } else if (options.disposition == Disposition::kCreateAlways) {
        outNode->body->content.clear();
    }
    return kOk;
}

bool MemoryFileSystem::exists(std::string_view path) {
    const std::lock_guard lock(mutex_);
    return !path.empty() && find(resolved(path)) != nullptr;
}

platform::PathKind MemoryFileSystem::kindOf(std::string_view path) {
    const std::lock_guard lock(mutex_);
    const NodePtr node = path.empty() ? nullptr : find(resolved(path));
    return node == nullptr ? platform::PathKind::kNothing : pathKindOf(node->kind);
}

bool MemoryFileSystem::isDirectory(std::string_view path) {
    const std::lock_guard lock(mutex_);
    const NodePtr node = path.empty() ? nullptr : findTarget(resolved(path));
    return node != nullptr && node->kind == kDirectory;
}

bool MemoryFileSystem::isOrdinaryDirectory(std::string_view path) {
    const std::lock_guard lock(mutex_);
    const NodePtr node = path.empty() ? nullptr : find(resolved(path));
    return node != nullptr && node->kind == kDirectory && !node->isMarked;
}

std::int64_t MemoryFileSystem::fileSize(std::string_view path) {
    const std::lock_guard lock(mutex_);
    const NodePtr node = findTarget(resolved(path));
    return node != nullptr && node->kind == kFile ? static_cast<std::int64_t>(node->body->content.size())
                                                  : -1;
}

int MemoryFileSystem::resolveFile(std::string_view path, std::string& outPath) {
    const std::lock_guard lock(mutex_);
    const NodePtr node = findTarget(resolved(path));
    outPath = node != nullptr && node->kind == kFile ? node->path : std::string();
    return node == nullptr ? kNotFound : node->kind == kDirectory ? kIsDirectory : kOk;
}

int MemoryFileSystem::removeFile(std::string_view path) {
    const std::lock_guard lock(mutex_);
    const std::string name = resolved(path);
    const int injected = begin(Operation::kRemoveFile, name, "removeFile " + name);
    if (injected != kOk) {
        return injected;
    }
    const NodePtr node = find(name);
    if (node == nullptr) {
        return kNotFound;
    }
    if (node->kind == kDirectory) {
        return kIsDirectory;
    }
    const int status = readOnlyStatus(name);
    if (status == kOk) {
        nodes_.erase(keyOf(name));
    }
    return status;
}

int MemoryFileSystem::moveFile(std::string_view from, std::string_view to) {
    const std::lock_guard lock(mutex_);
    const std::string source = resolved(from);
    const std::string target = resolved(to);
    const int status = begin(Operation::kMoveFile, source, "moveFile " + source + " -> " + target);
    return status != kOk ? status : relocate(source, target, false);
}

int MemoryFileSystem::replaceFile(std::string_view from, std::string_view to) {
    const std::lock_guard lock(mutex_);
    const std::string source = resolved(from);
    const std::string target = resolved(to);
    const int status = begin(Operation::kReplaceFile, source, "replaceFile " + source + " -> " + target);
    return status != kOk ? status : relocate(source, target, true);
}

int MemoryFileSystem::relocate(const std::string& from, const std::string& to, bool replace) {
    const NodePtr node = find(from);
    const NodePtr present = find(to);
    if (node == nullptr) {
        return kNotFound;
    }
    if (node->kind == kDirectory) {
        return kIsDirectory;
    }
    if (present != nullptr && present != node && (!replace || present->kind == kDirectory)) {
        return kExists;
    }
    for (const std::string& path : {from, to}) {
        if (const int status = readOnlyStatus(path); status != kOk) {
            return status;
        }
    }
    return place(node, from, to);
}

int MemoryFileSystem::place(const NodePtr& node, const std::string& from, const std::string& to) {
    if (const int status = parentStatus(to); status != kOk) {
        return status;
    }
    if (volumeOf(from) != volumeOf(to)) {
        return kOtherVolume;
    }
    nodes_.erase(keyOf(from));
    node->path = to;
    nodes_[keyOf(to)] = node;
    return kOk;
}

void MemoryFileSystem::setVolume(std::string_view path) {
    const std::lock_guard lock(mutex_);
    volumes_.insert(keyOf(resolved(path)));
}

void MemoryFileSystem::reportFreeSpace(std::string_view path, std::int64_t bytes) {
    const std::lock_guard lock(mutex_);
    reportedSpace_[volumeOf(resolved(path))] = bytes;
}

int MemoryFileSystem::findVolume(std::string_view path, platform::Volume& outVolume) {
    const std::lock_guard lock(mutex_);
    outVolume = {};
    const std::string name = resolved(path);
    const NodePtr target = findTarget(name);
    const std::string volume = volumeOf(target == nullptr ? name : target->path);
    const auto reported = reportedSpace_.find(volume);
    const bool isReported = reported != reportedSpace_.end();
    if (isReported && reported->second < 0) {
        return kAccessDenied;
    }
    outVolume = {volume.empty() ? "/" : volume, "volume " + volume,
                 isReported ? reported->second : std::numeric_limits<std::int64_t>::max()};
    return kOk;
}

std::string MemoryFileSystem::volumeOf(const std::string& path) const {
    std::string volume;
    for (const std::string& top : volumes_) {
        volume = isAtOrBelow(keyOf(path), top) ? top : volume;
    }
    return volume;
}

int MemoryFileSystem::takeFileAway(std::string_view path, std::string_view to) {
    const std::lock_guard lock(mutex_);
    const std::string source = resolved(path);
    const std::string target = resolved(to);
    int status = begin(Operation::kRemoveFile, source, "takeAway " + source + " -> " + target);
    status = status != kOk ? status : begin(Operation::kMoveFile, source, "");
    const NodePtr node = find(source);
    if (status == kOk && node != nullptr && node->kind == kDevice) {
        status = kAccessDenied;
    }
    return status != kOk ? status : relocate(source, target, false);
}

int MemoryFileSystem::takeDirectoryAway(std::string_view path, std::string_view to) {
    const std::lock_guard lock(mutex_);
    const std::string source = resolved(path);
    const std::string target = resolved(to);
    int status = begin(Operation::kRemoveDirectory, source, "takeAway " + source + " -> " + target);
    status = status != kOk ? status : begin(Operation::kMoveFile, source, "");
    const NodePtr node = find(source);
    if (status != kOk || node == nullptr || node->kind != kDirectory || isRoot(source)) {
        return status != kOk ? status : kNotFound;
    }
    if (hasChildren(source) || find(target) != nullptr) {
        return hasChildren(source) ? kNotEmpty : kExists;
    }
    for (const std::string& place : {source, target}) {
        if (const int readOnly = readOnlyStatus(place); readOnly != kOk) {
            return readOnly;
        }
    }
    return place(node, source, target);
}

int MemoryFileSystem::createDirectory(std::string_view path) {
    const std::lock_guard lock(mutex_);
    const std::string name = resolved(path);
    int status = begin(Operation::kCreateDirectory, name, "createDirectory " + name);
    if (status == kOk && find(name) != nullptr) {
        status = kExists;
    }
    if (status == kOk) {
        status = parentStatus(name);
    }
    if (status == kOk) {
        status = readOnlyStatus(name);
    }
    if (status == kOk) {
        add(name, kDirectory);
    }
    return status;
}

bool MemoryFileSystem::isPlaceOf(const NodePtr& node) const {
    return isRoot(node->path) || find(node->path) == node;
}

bool MemoryFileSystem::hasChildren(const std::string& path) const {
    if (const NodePtr node = find(path); node != nullptr && !node->rawNames.empty()) {
        return true;
    }
    const std::string prefix = keyOf(path) + "/";
    const auto next = nodes_.lower_bound(prefix);
    return next != nodes_.end() && next->first.compare(0, prefix.size(), prefix) == 0;
}

int MemoryFileSystem::removeDirectory(std::string_view path) {
    const std::lock_guard lock(mutex_);
    const std::string name = resolved(path);
    const int injected = begin(Operation::kRemoveDirectory, name, "removeDirectory " + name);
    if (injected != kOk) {
        return injected;
    }
    const NodePtr node = find(name);
    if (node == nullptr || node->kind != kDirectory) {
        return kNotFound;
    }
    if (hasChildren(name)) {
        return kNotEmpty;
    }
    const int status = isRoot(name) ? kAccessDenied : readOnlyStatus(name);
    if (status == kOk) {
        nodes_.erase(keyOf(name));
    }
    return status;
}

int MemoryFileSystem::list(std::string_view path, std::vector<platform::DirectoryEntry>& outEntries) {
    const std::lock_guard lock(mutex_);
    outEntries.clear();
    const std::string name = resolved(path);
    const int status = begin(Operation::kList, name, "list " + name);
    if (status != kOk) {
        return status;
    }
    const NodePtr top = findTarget(name);
    if (top == nullptr || top->kind != kDirectory) {
        return kNotFound;
    }
    const std::string prefix = keyOf(top->path) + "/";
    for (auto at = nodes_.lower_bound(prefix); at != nodes_.end(); ++at) {
        if (at->first.compare(0, prefix.size(), prefix) != 0) {
            break;
        }
        if (at->first.find('/', prefix.size()) == std::string::npos) {
            outEntries.push_back({at->second->path.substr(prefix.size()), at->second->kind == kDirectory});
        }
    }
    for (const std::string& raw : top->rawNames) {
        if (isPlainName(raw)) {
            outEntries.push_back({raw, false});
        }
    }
    return kOk;
}

int MemoryFileSystem::listDisk(const std::string& path, std::vector<platform::DiskEntry>& outEntries) {
    std::vector<platform::DirectoryEntry> names;
    const int status = list(path, names);
    const NodePtr top = find(path);
    if (status != kOk || top == nullptr) {
        return status;
    }
    for (const platform::DirectoryEntry& entry : names) {
        const NodePtr node = find(path + "/" + entry.name);
        if (node == nullptr) {
            continue;  // a raw name, which follows
        }
        platform::DiskEntry& found = outEntries.emplace_back();
        found.name = entry.name;
        found.kind = pathKindOf(node->kind);
        found.size = node->kind == kFile ? static_cast<std::int64_t>(node->body->content.size()) : -1;
        found.isProgram = node->kind == kFile && node->body->executable;
    }
    for (const std::string& raw : top->rawNames) {
        outEntries.push_back({raw, platform::PathKind::kFile, 0, false, isPlainName(raw)});
    }
    return kOk;
}

int MemoryFileSystem::linkTarget(std::string_view path, std::string& outTarget) {
    const std::lock_guard lock(mutex_);
    const NodePtr node = find(resolved(path));
    outTarget = node != nullptr && node->kind == kLink ? node->body->linkText : std::string();
    return node != nullptr && node->kind == kLink ? kOk : kNotFound;
}

int MemoryFileSystem::openDirectory(std::string_view path,
                                    std::unique_ptr<platform::Directory>& outDirectory) {
    outDirectory = nullptr;
    const std::lock_guard lock(mutex_);
    const std::string name = resolved(path);
    const int status = begin(Operation::kOpen, name, "");
    const NodePtr node = path.empty() ? nullptr : find(name);
    if (status != kOk || node == nullptr) {
        return status != kOk ? status : kNotFound;
    }
    if (node->kind != kDirectory) {
        return kAccessDenied;
    }
    outDirectory = std::make_unique<OpenDirectory>(*this, node);
    return kOk;
}

int MemoryFileSystem::makeExecutable(std::string_view path) {
    const std::lock_guard lock(mutex_);
    const std::string name = resolved(path);
    const int status = begin(Operation::kMakeExecutable, name, "makeExecutable " + name);
    if (status != kOk) {
        return status;
    }
    const NodePtr node = find(name);
    if (node == nullptr || node->kind != kFile) {
        return node == nullptr ? kNotFound : kAccessDenied;
    }
    if (const int readOnly = readOnlyStatus(name); readOnly != kOk) {
        return readOnly;
    }
    node->body->executable = true;
    return kOk;
}

int MemoryFileSystem::takeDirectoryRights(std::string_view path) {
    const std::lock_guard lock(mutex_);
    const std::string name = resolved(path);
    const int status = begin(Operation::kTakeDirectoryRights, name, "takeDirectoryRights " + name);
    if (status != kOk) {
        return status;
    }
    const NodePtr node = find(name);
    if (node == nullptr) {
        return kNotFound;
    }
    node->body->hasDirectoryRights = true;
    return readOnlyStatus(name);
}

std::string MemoryFileSystem::rightsOf(std::string_view path) {
    const std::lock_guard lock(mutex_);
    const std::string name = resolved(path);
    const NodePtr node = find(name);
    if (node == nullptr || node->kind != kFile || readOnlyStatus(name) != kOk) {
        return "";
    }
    const Node::Body& body = *node->body;
    return std::string(body.isMasked ? "masked " : "made ") + (body.isPrivate ? "private " : "public ") +
           (body.executable ? "program" : "plain");
}

bool MemoryFileSystem::temporaryDirectory(std::string& outPath) {
    const std::lock_guard lock(mutex_);
    outPath = temporaryDirectory_;
    return !outPath.empty();
}

bool MemoryFileSystem::temporaryName(std::string_view prefix, std::uint32_t number, std::string& outPath) {
    if (number == 0 || !temporaryDirectory(outPath)) {
        outPath.clear();
        return false;
    }
    outPath += "/" + std::string(prefix) + OUtils::formatText("%X.tmp", number);
    return true;
}

void MemoryFileSystem::setOtherPrivatePlaces(std::vector<std::string> places) {
    const std::lock_guard lock(mutex_);
    otherPrivatePlaces_ = std::move(places);
}

void MemoryFileSystem::setUnprotected(std::string_view path) {
    const std::lock_guard lock(mutex_);
    unprotected_.insert(keyOf(resolved(path)));
}

std::vector<std::string> MemoryFileSystem::removedAtRestart() const {
    const std::lock_guard lock(mutex_);
    return removedAtRestart_;
}

// Links on the way are followed as well, from the front. Empty when there is nothing.
std::string MemoryFileSystem::realNameOf(const std::string& path, int links) const {
    std::string real;
    for (const std::string& component : componentsOf(path)) {
        real += real.empty() && isDrive(component) ? component : "/" + component;
        NodePtr node = find(real);
        if (node != nullptr && node->kind == kLink) {
            node = links < 40 ? find(realNameOf(node->body->content, links + 1)) : nullptr;
        }
        if (node == nullptr) {
            return {};
        }
        real = node->path;
    }
    return real;
}

int MemoryFileSystem::realPath(std::string_view path, std::string& outPath) {
    const std::lock_guard lock(mutex_);
    outPath = realNameOf(resolved(path));
    return outPath.empty() ? kNotFound : kOk;
}

bool MemoryFileSystem::isProtected(std::string_view path, platform::Protection /*protection*/) {
    const std::lock_guard lock(mutex_);
    const std::string real = realNameOf(resolved(path));
    return !real.empty() && std::none_of(unprotected_.begin(), unprotected_.end(),
                                         [&](const auto& top) { return isAtOrBelow(keyOf(real), top); });
}

int MemoryFileSystem::createPrivateDirectory(std::string_view parent, std::string_view prefix,
                                             std::string& outPath) {
    outPath.clear();
    const std::string path =
        std::string(parent) + "/" + std::string(prefix) + std::to_string(++privateDirectories_);
    const int status = createDirectory(path);
    if (status == kOk) {
        const std::lock_guard lock(mutex_);
        find(resolved(path))->body->isPrivate = true;
        outPath = path;
    }
    return status;
}

std::vector<std::string> MemoryFileSystem::otherPrivatePlaces() {
    const std::lock_guard lock(mutex_);
    return otherPrivatePlaces_;
}

int MemoryFileSystem::removeAtRestart(std::string_view path) {
    const std::lock_guard lock(mutex_);
    removedAtRestart_.push_back(resolved(path));
    return kOk;
}
