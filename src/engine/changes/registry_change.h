#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "description/vocabulary.h"
#include "engine/changes/change.h"
#include "platform/registry.h"

class ChangeRecord;
class ProductDescription;

// The root that one of the four hive names means, exactly as a description writes it.
std::optional<platform::RegistryRoot> registryRootOf(std::string_view place);

// Changes to the registry's native view: the action `Registry`, and the records REGKEY (count of levels,
// root, path) and REGVAL (root, path, value name). For a key's default value, whose name is empty, REGVAL has
// a fourth field, DEFAULT: a record that ends with an empty field would look like one that was cut.
//
// What a record couldn't name for the undo isn't written: a path above the limit, a path or name with a TAB,
// a line break or white space at its end, and both together when they don't fit a line.
class RegistryChange : public Change {
public:
    static constexpr std::size_t kPathLimit = 511;  // bytes

    // A key as a description names it: a hive, and a path that may hold `/` for `\`.
    struct Key {
        std::string_view place;
        std::string_view path;
    };

    struct Value {
        Key key;
        std::string_view name;  // empty: the key's default value
        // REG_SZ (also when empty), REG_DWORD with `data` as a base-16 number, or REG_BINARY with pairs of
        // hexadecimal digits; any other word writes an empty text.
        std::string_view type;
        std::string_view data;
    };

    struct WriteResult {
        std::optional<int> status;  // 0 or the system's error; none when the place isn't one of the hives
        int createdLevels = 0;      // of the key; after a failure they are gone again and it is 0

        bool isDone() const { return status == platform::kRegOk; }
    };

    explicit RegistryChange(const ChangeContext& context) : context_(context) {}

    // Nothing: registry changes are actions.
    bool apply() override { return true; }
    // Makes the changes that the children of an action `Registry` ask for. Without an open action log the
    // product's own is continued for as long as that takes. False when a value or a key could not be written,
    // or their records; each is reported, and the next child is carried out. A value or key that can't be
    // removed is no failure: mostly it isn't there.
    bool applyElement(std::int32_t node, const ProductDescription& product);

    // Takes a value away at once; keys wait for finishUndo, since they have to be empty. False when the value
    // is there and can't be deleted, which is reported. A record that can't be read is no failure.
    bool undo(const LogRecord& record) override;
    // Takes the noted keys away, the last one first. False when one without subkeys can't be deleted, which
    // is reported; one that has got subkeys of somebody else stays, with those above it, until another call
    // finds them gone.
    bool finishUndo() override;

    static WriteResult writeValue(platform::Registry& registry, const Value& value);
    // The number of key levels that were made: 0 when the key existed, and after a failure, which leaves
    // none. `outStatus` is that of the call which failed, and 0 otherwise.
    static int createKey(platform::Registry& registry, const Key& key, int* outStatus = nullptr);
    // 0 or the system's error; none when the place isn't one of the hives.
    static std::optional<int> deleteValue(platform::Registry& registry, const Key& key,
                                          std::string_view name);
    // The paths of all levels of the key, the topmost first.
    static std::vector<std::string> levelsOf(const Key& key);
    // What the line BEFORE of the action log says of a value.
    static std::string formerStateOf(const platform::RegistryValue& value);
    // Deletes up to `levels` keys from the deepest on, each only without subkeys. The number of deleted ones;
    // 0 for a path of fewer levels.
    static int deleteKeys(platform::Registry& registry, const Key& key, int levels);

private:
    // A child of the action with its texts as they are to be used.
    struct Element {
        std::int32_t node = -1;
        bool expand = false;
        std::string place;
        std::string path;
        std::optional<std::string> valueName;

        Key key() const { return {place, path}; }
    };
    // False when what the child asks for could not be written.
    using Step = bool (RegistryChange::*)(const Element& element);
    struct Action {
        vocabulary::ElementName element;
        Step step;
    };
    static const Action kActions[];

    struct CreatedKey {
        std::string place;
        std::string path;
        int levels;
    };

    bool openProductLog(const ProductDescription& product);
    bool isWanted(std::int32_t node);
    static Step stepOf(std::string_view name);
    Element readElement(std::int32_t node);
    std::string textOf(const Element& element, std::string_view text);
    bool refuse(const Element& element);
    bool addValue(const Element& element);
    bool addKey(const Element& element);
    bool removeValue(const Element& element);
    bool removeKey(const Element& element);
    bool undoValue(const Key& key, std::string_view name);
    bool removeCreatedKey(CreatedKey& key);
    void leaveToList(CreatedKey& key);
    bool reportFailedChange(std::string_view work, const Key& key, std::string_view name,
                            std::optional<int> status);
    bool reportFailure(std::string_view work, const Key& key, std::string_view name,
                       std::optional<int> status);
    bool isRecorded(const Element& element);
    int recordKey(const Element& element, ChangeRecord& record);
    int recordValue(const Element& element, const Value& value, ChangeRecord& record);
    bool holdsFormer(const Key& key, std::string_view name, std::string_view former);
    bool reportUnrecorded(const Element& element, int status);

    ChangeContext context_;
    std::vector<CreatedKey> createdKeys_;
};
