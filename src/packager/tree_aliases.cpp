#include "packager/tree_aliases.h"

#include "description/file_sets.h"
#include "packager/equal_contents.h"
#include "packager/root_path.h"

void TreeAliases::reserve(const std::string& alias, const std::string& path,
                          std::optional<std::int64_t> size) {
    if (take(alias, path) && size) {
        Group& group = groups_[*size];
        add(group, bucketOf(group, path), {path, alias});
    }
}

std::string TreeAliases::aliasOf(const std::string& path, std::optional<std::int64_t> size) {
    if (const auto known = aliasByPath_.find(path); known != aliasByPath_.end()) {
        return known->second;
    }
    Group* const group = size ? &groups_[*size] : nullptr;
    std::vector<Known>* const bucket = group != nullptr ? bucketOf(*group, path) : nullptr;
    if (bucket != nullptr) {
        for (const Known& known : *bucket) {
            if (haveEqualContents(files_, placeOf(known.path), placeOf(path))) {
                return aliasByPath_[path] = known.alias;
            }
        }
    }
    const std::string alias = freeAliasFor(path);
    if (group != nullptr) {
        add(*group, bucket, {path, alias});
    }
    return aliasByPath_[path] = alias;
}

// Two paths can have one default: "a/bc" and "ab/c".
std::string TreeAliases::freeAliasFor(const std::string& path) {
    std::string alias = defaultAliasOf(path);
    if (alias.size() <= FileEntry::kNameLimit && take(alias, path)) {
        return alias;
    }
    const std::string digest = md5Text(md5Of(path.data(), path.size()));
    alias = digest;
    for (int number = 2; !take(alias, path); ++number) {
        alias = digest + "-" + std::to_string(number);
    }
    return alias;
}

bool TreeAliases::take(const std::string& alias, const std::string& path) {
    const auto [known, isNew] = pathByAlias_.try_emplace(alias, path);
    return isNew || (!path.empty() && known->second == path);
}

std::vector<TreeAliases::Known>* TreeAliases::bucketOf(Group& group, const std::string& path) {
    if (group.only) {
        const Known only = *group.only;
        group.only.reset();
        if (const auto digest = contentDigest(files_, placeOf(only.path))) {
            group.byDigest[*digest].push_back(only);
        }
    }
    if (group.byDigest.empty()) {
        return nullptr;
    }
    const auto digest = contentDigest(files_, placeOf(path));
    return digest ? &group.byDigest[*digest] : nullptr;
}

void TreeAliases::add(Group& group, std::vector<Known>* bucket, Known known) {
    if (bucket != nullptr) {
        bucket->push_back(std::move(known));
    } else if (!group.only && group.byDigest.empty()) {
        group.only = std::move(known);
    }
}
