#include "engine/removal_record.h"

#include <algorithm>
#include <cstring>

#include "base/path_functions.h"
#include "engine/product_state.h"
#include "engine/removal_journal_format.h"
#include "package/little_endian.h"

namespace {

namespace Format = RemovalJournalFormat;
using platform::PathKind;

unsigned char* bytesOf(std::string& text, std::size_t offset) {
    return reinterpret_cast<unsigned char*>(text.data() + offset);
}

const unsigned char* bytesOf(std::string_view text, std::size_t offset) {
    return reinterpret_cast<const unsigned char*>(text.data() + offset);
}

void addNumber(std::string& text, std::uint32_t number) {
    unsigned char field[4];
    LittleEndian::writeUnsigned(field, number);
    text.append(reinterpret_cast<const char*>(field), sizeof field);
}

void addText(std::string& body, std::string_view text) {
    addNumber(body, static_cast<std::uint32_t>(text.size()));
    body += text;
}

void addValues(std::string& body, const std::vector<KeptValue>& values) {
    addNumber(body, static_cast<std::uint32_t>(values.size()));
    for (const KeptValue& value : values) {
        addText(body, value.name);
        addNumber(body, value.type);
        addText(body, value.data);
    }
}

std::string bodyOf(const RemovalRecord& record) {
    std::string body(Format::kTextsOffset, '\0');
    body[Format::kStepOffset] = static_cast<char>(record.step);
    body[Format::kFlagsOffset] = static_cast<char>(record.flags);
    body[Format::kRootOffset] = static_cast<char>(record.root);
    body[Format::kViewOffset] = static_cast<char>(record.view);
    LittleEndian::writeUnsigned(bytesOf(body, Format::kSubjectOffset), record.subject);
    LittleEndian::writeUnsigned(bytesOf(body, Format::kKeptOffset), record.kept);
    body[Format::kLeftKindOffset] = static_cast<char>(record.left.kind);
    LittleEndian::writeSigned64(bytesOf(body, Format::kLeftSizeOffset), record.left.size);
    std::ranges::copy(record.left.digest, bytesOf(body, Format::kLeftDigestOffset));
    addText(body, record.path);
    addText(body, record.other);
    addValues(body, record.before);
    addValues(body, record.after);
    return body;
}

bool isIn(RemovalStep step, RemovalStep first, RemovalStep last) {
    return step >= first && step <= last;
}

bool isFileStep(RemovalStep step) {
    return isIn(step, RemovalStep::kRemoveFile, RemovalStep::kChangeRights) || step == RemovalStep::kArchived;
}

bool isKnown(RemovalStep step) {
    return isIn(step, RemovalStep::kNote, RemovalStep::kLeft) || isFileStep(step) ||
           isIn(step, RemovalStep::kCreateKey, RemovalStep::kDeleteValue) ||
           isIn(step, RemovalStep::kFirewallApplication, RemovalStep::kFirewallSwitchOn) ||
           step == RemovalStep::kBroadcastEnvironment;
}

// The fields of a body, one after the other. Once one doesn't fit, none does.
class BodyReader {
public:
    explicit BodyReader(std::string_view body) : rest_(body) {}

    std::uint32_t number() {
        if (!takes(4)) {
            return 0;
        }
        const std::uint32_t value = LittleEndian::readUnsigned(bytesOf(rest_, 0));
        rest_.remove_prefix(4);
        return value;
    }
    std::string text() {
        const std::size_t size = number();
        if (!takes(size)) {
            return {};
        }
        std::string value(rest_.substr(0, size));
        rest_.remove_prefix(size);
        return value;
    }
    std::vector<KeptValue> values() {
        const std::size_t count = number();
        std::vector<KeptValue> values;
        isGood_ = isGood_ && count <= Format::kCountLimit;
        for (std::size_t i = 0; isGood_ && i < count; ++i) {
            KeptValue value;
            value.name = text();
            value.type = number();
            value.data = text();
            isGood_ = isGood_ && value.name.find('\0') == std::string::npos;
            values.push_back(std::move(value));
        }
        return values;
    }
    bool endsHere() const { return isGood_ && rest_.empty(); }

private:
    bool takes(std::size_t size) {
        isGood_ = isGood_ && size <= rest_.size();
        return isGood_;
    }

    std::string_view rest_;
    bool isGood_ = true;
};

bool isUsablePath(std::string_view path) {
    const std::size_t root = path.size() > 2 && path[1] == ':' ? 2 : 0;
    return path.size() > root && OUtils::isSeparator(path[root]) && path.find('\0') == std::string_view::npos;
}

bool isSound(const RemovalRecord& record) {
    const bool isFile = isFileStep(record.step);
    const bool hasSource = record.step == RemovalStep::kMoveFile || record.step == RemovalStep::kReplaceFile;
    return isKnown(record.step) && record.number != 0 && record.flags <= Format::kAllFlags &&
           record.left.kind <= PathKind::kOther && record.left.size >= 0 &&
           record.root <= static_cast<std::uint8_t>(platform::RegistryRoot::kUsers) &&
           record.view <= static_cast<std::uint8_t>(platform::RegistryView::k32Bit) &&
           (isFile ? isUsablePath(record.path) : record.path.find('\0') == std::string::npos) &&
           (hasSource ? isUsablePath(record.other) : record.other.find('\0') == std::string::npos);
}

std::optional<RemovalRecord> recordOf(std::string_view body, std::uint32_t number) {
    if (body.size() < Format::kTextsOffset) {
        return std::nullopt;
    }
    RemovalRecord record;
    record.number = number;
    const unsigned char* const bytes = bytesOf(body, 0);
    record.step = static_cast<RemovalStep>(bytes[Format::kStepOffset]);
    record.flags = bytes[Format::kFlagsOffset];
    record.root = bytes[Format::kRootOffset];
    record.view = bytes[Format::kViewOffset];
    record.subject = LittleEndian::readUnsigned(bytes + Format::kSubjectOffset);
    record.kept = LittleEndian::readUnsigned(bytes + Format::kKeptOffset);
    record.left.kind = static_cast<PathKind>(bytes[Format::kLeftKindOffset]);
    record.left.size = LittleEndian::readSigned64(bytes + Format::kLeftSizeOffset);
    std::copy_n(bytes + Format::kLeftDigestOffset, record.left.digest.size(), record.left.digest.begin());
    BodyReader texts(body.substr(Format::kTextsOffset));
    record.path = texts.text();
    record.other = texts.text();
    record.before = texts.values();
    record.after = texts.values();
    return texts.endsHere() && isSound(record) ? std::optional(std::move(record)) : std::nullopt;
}

bool startsWithDigest(std::string_view field, std::string_view of) {
    const Md5Digest digest = md5Of(of.data(), of.size());
    return std::memcmp(field.data(), digest.data(), field.size()) == 0;
}

// The size of the body of a record whose head is here and whole.
std::optional<std::size_t> bodySizeAt(std::string_view content) {
    if (content.size() < Format::kHeadSize || !content.starts_with(Format::kMark) ||
        !startsWithDigest(content.substr(Format::kHeadDigestOffset, Format::kHeadDigestSize),
                          content.substr(0, Format::kHeadDigestOffset))) {
        return std::nullopt;
    }
    const std::size_t size = LittleEndian::readUnsigned(bytesOf(content, Format::kSizeOffset));
    return size <= Format::kBodyLimit ? std::optional(size) : std::nullopt;
}

// `content` begins with a whole head.
std::optional<RemovalRecord> recordAt(std::string_view content, std::size_t bodySize) {
    const std::string_view body = content.substr(Format::kHeadSize, bodySize);
    const std::string_view digest = content.substr(Format::kBodyDigestOffset, Format::kBodyDigestSize);
    if (body.size() < bodySize || !startsWithDigest(digest, body)) {
        return std::nullopt;
    }
    return recordOf(body, LittleEndian::readUnsigned(bytesOf(content, Format::kNumberOffset)));
}

// The writer was stopped in the middle of a record, before the change that it names.
bool isTornEnd(std::string_view rest, std::optional<std::size_t> bodySize) {
    const std::string_view mark = Format::kMark.substr(0, rest.size());
    return bodySize ? rest.size() < Format::kHeadSize + *bodySize
                    : rest.size() < Format::kHeadSize && rest.starts_with(mark);
}

}  // namespace

PlaceContent contentOfPlace(platform::FileSystem& files, std::string_view path, int* outStatus) {
    PlaceContent content;
    content.kind = files.kindOf(path);
    if (content.kind != PathKind::kFile) {
        return content;
    }
    const std::optional<Md5Digest> digest = digestOfFile(files, path, outStatus);
    content.size = files.fileSize(path);
    if (!digest || content.size < 0) {
        return {PathKind::kOther, 0, {}};
    }
    content.digest = *digest;
    return content;
}

std::optional<std::string> frameOf(const RemovalRecord& record) {
    const std::string body = bodyOf(record);
    if (body.size() > Format::kBodyLimit || record.before.size() > Format::kCountLimit ||
        record.after.size() > Format::kCountLimit) {
        return std::nullopt;
    }
    std::string frame(Format::kMark);
    addNumber(frame, static_cast<std::uint32_t>(body.size()));
    addNumber(frame, record.number);
    const Md5Digest bodyDigest = md5Of(body.data(), body.size());
    frame.append(reinterpret_cast<const char*>(bodyDigest.data()), Format::kBodyDigestSize);
    const Md5Digest headDigest = md5Of(frame.data(), frame.size());
    frame.append(reinterpret_cast<const char*>(headDigest.data()), Format::kHeadDigestSize);
    return frame + body;
}

// Where no record is, the next mark is looked for. A head that is whole says where its record ends even if
// the body is damaged, so nothing is looked at twice.
ReadRecords readRecords(std::string_view content) {
    ReadRecords read;
    if (!content.starts_with(Format::kBanner)) {
        return read;
    }
    read.isWhole = true;
    read.end = Format::kBanner.size();
    for (std::size_t at = read.end; at < content.size();) {
        const std::string_view rest = content.substr(at);
        const std::optional<std::size_t> bodySize = bodySizeAt(rest);
        std::optional<RemovalRecord> record = bodySize ? recordAt(rest, *bodySize) : std::nullopt;
        const std::size_t size =
            bodySize ? Format::kHeadSize + *bodySize : std::min(rest.find(Format::kMark, 1), rest.size());
        at += std::min(size, rest.size());
        if (record) {
            read.records.push_back(std::move(*record));
            read.end = at;
        } else if (!isTornEnd(rest, bodySize)) {
            read.isWhole = false;
        }
    }
    return read;
}
