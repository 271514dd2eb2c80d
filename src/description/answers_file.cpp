#include "description/answers_file.h"

int AnswersFile::load(std::string_view path) {
    if (document_.has_value() && path == path_) {
        return 0;
    }
    path_ = path;
    document_.emplace();
    const int status = document_->loadFile(path_.c_str(), files_);
    if (status != 0) {
        document_.reset();
    }
    return status;
}

bool AnswersFile::hasValues() const {
    return document_.has_value() && document_->findByName("DefValues", -1) >= 0;
}
