#include "description/dialog_model.h"

namespace {

constexpr int kDialogItself = -1;

template <typename Record>
Record* recordAt(std::vector<Record>& records, int index) {
    return index >= 0 && index < static_cast<int>(records.size()) ? &records[static_cast<std::size_t>(index)]
                                                                  : nullptr;
}

template <typename Record>
Record* recordAt(DialogDesc* dialog, std::vector<Record> DialogDesc::*list, int index) {
    return dialog == nullptr ? nullptr : recordAt(dialog->*list, index);
}

template <typename Record>
int countOf(const DialogDesc* dialog, std::vector<Record> DialogDesc::*list) {
    return dialog == nullptr ? 0 : static_cast<int>((dialog->*list).size());
}

}  // namespace

DialogDesc* DialogModel::getDialog(int dialog, int sub) {
    DialogDesc* record = recordAt(dialogs_, dialog);
    return record == nullptr || sub == kDialogItself ? record : recordAt(record->subDialogs, sub);
}

int DialogModel::getDialogWidth(int dialog) {
    const DialogDesc* record = getDialog(dialog, kDialogItself);
    return record == nullptr ? 0 : record->width;
}

int DialogModel::getDialogHeight(int dialog) {
    const DialogDesc* record = getDialog(dialog, kDialogItself);
    return record == nullptr ? 0 : record->height;
}

int DialogModel::getSubDialogCount(int dialog) {
    return countOf(getDialog(dialog, kDialogItself), &DialogDesc::subDialogs);
}

DialogElementDesc* DialogModel::getElement(int dialog, int index, int sub) {
    return recordAt(getDialog(dialog, sub), &DialogDesc::elements, index);
}

int DialogModel::getElementCount(int dialog, int sub) {
    return countOf(getDialog(dialog, sub), &DialogDesc::elements);
}

DialogButtonDesc* DialogModel::getDialogItem(int dialog, int index, int sub) {
    return recordAt(getDialog(dialog, sub), &DialogDesc::buttons, index);
}

int DialogModel::getDialogItemCount(int dialog, int sub) {
    return countOf(getDialog(dialog, sub), &DialogDesc::buttons);
}

DialogFieldDesc* DialogModel::getField(int dialog, int index, int sub) {
    return recordAt(getDialog(dialog, sub), &DialogDesc::fields, index);
}

int DialogModel::getFieldCount(int dialog, int sub) {
    return countOf(getDialog(dialog, sub), &DialogDesc::fields);
}

TaskDesc* DialogModel::getTask(int dialog, int index) {
    return recordAt(getDialog(dialog, kDialogItself), &DialogDesc::tasks, index);
}

int DialogModel::getTaskCount(int dialog) {
    return countOf(getDialog(dialog, kDialogItself), &DialogDesc::tasks);
}

void DialogModel::getDialogColours(int dialog, int sub, std::int32_t& outBackground,
                                   std::int32_t& outForeground) {
    const DialogDesc* record = getDialog(dialog, sub);
    outBackground = record == nullptr ? -1 : record->backgroundColour;
    outForeground = record == nullptr ? -1 : record->foregroundColour;
}
