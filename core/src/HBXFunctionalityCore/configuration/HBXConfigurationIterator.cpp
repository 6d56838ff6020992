#include <HBXFunctionalityCore/configuration/HBXConfigurationIterator.h>

#include <HBXCommon/HBXAbort.h>
#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>
#include <HBXFunctionalityCore/configuration/internal/ConfigurationElements.h>

namespace HBX {

namespace {

constexpr char kSeparator = '/';
constexpr int kSectionLevel = 1; ///< the wrapper lies below

void demand(bool holds, int line, const char* function) {
    if (!holds) {
        abort("HBXFunctionalityCore", "core/src/HBXFunctionalityCore/HBXConfig", line, function, function);
    }
}

} // namespace

HBXConfigurationIterator::HBXConfigurationIterator(HBXMessage* message)
    : iterator_(message->newIterator()), message_(message) {
    seekRoot();
}

int HBXConfigurationIterator::seek(const std::string& path) {
    if (followPath(path, false) != 0) {
        restorePath();
        return -1;
    }
    return 0;
}

int HBXConfigurationIterator::seekPresence(const std::string& path) {
    const int result = followPath(path, false);
    restorePath();
    return result;
}

int HBXConfigurationIterator::seekUp() {
    if (level_ == 0 || iterator_->seekUp() != 0) {
        return -1;
    }
    if (level_ == kSectionLevel + 1) {
        iterator_->seekUp();
    }
    --level_;
    return 0;
}

template <class Step>
int HBXConfigurationIterator::stepToChild(const Step& step) {
    if (adjustLevel() != 0) {
        return -1;
    }
    if (step() != 0) {
        restorePath();
        return -1;
    }
    return 0;
}

int HBXConfigurationIterator::newChild(const std::string& name) {
    return stepToChild([&] { return iterator_->newChild(name); });
}

int HBXConfigurationIterator::firstChild() {
    return stepToChild([&] { return iterator_->firstChild(); });
}

int HBXConfigurationIterator::firstChild(const std::string& name) {
    return stepToChild([&] { return iterator_->firstChild(name); });
}

int HBXConfigurationIterator::nextSibling() { return iterator_->nextSibling(); }

int HBXConfigurationIterator::nextSibling(const std::string& name) { return iterator_->nextSibling(name); }

int HBXConfigurationIterator::deleteFromChild() { return iterator_->deleteFromChild(); }

std::string HBXConfigurationIterator::curName() const { return iterator_->curName(); }

template <class Access>
int HBXConfigurationIterator::access(std::string_view path, bool create, const Access& access) {
    const bool isThere = followPath(path, create) == 0;
    const int result = isThere && access(*iterator_) == 0 ? 0 : -1;
    restorePath();
    return result;
}

int HBXConfigurationIterator::getValue(std::string& value, const std::string& path) {
    return access(path, false, [&](const HBXMessageIterator& it) { return it.getValue(value, 0); });
}

int HBXConfigurationIterator::getValue(int& value, const std::string& path) {
    return access(path, false, [&](const HBXMessageIterator& it) { return it.getValue(value, 0); });
}

int HBXConfigurationIterator::getValueBase64(std::string& value, const std::string& path) {
    return access(path, false, [&](const HBXMessageIterator& it) { return it.getValueBase64(value, 0); });
}

int HBXConfigurationIterator::putValue(const std::string& value, const std::string& path) {
    return access(path, true, [&](HBXMessageIterator& it) { return it.putValue(value, 0); });
}

int HBXConfigurationIterator::putValue(int value, const std::string& path) {
    return access(path, true, [&](HBXMessageIterator& it) { return it.putValue(value, 0); });
}

int HBXConfigurationIterator::putValueBase64(const std::string& value, const std::string& path) {
    return access(path, true, [&](HBXMessageIterator& it) { return it.putValueBase64(value, 0); });
}

HBXConfiguration* HBXConfigurationIterator::getConfig() const { return new HBXConfiguration(getMessage()); }

HBXConfigurationIterator* HBXConfigurationIterator::getIterator() const {
    return new HBXConfigurationIterator(getMessage());
}

int HBXConfigurationIterator::seekRoot() {
    level_ = 0;
    return iterator_->seekRoot() == 0 && iterator_->seek(internal::kTop) == 0 ? 0 : -1;
}

int HBXConfigurationIterator::seekSubPath(const std::string& name) {
    if ((level_ == kSectionLevel && iterator_->seek(internal::kSettings) != 0) ||
        iterator_->seek(name) != 0) {
        return -1;
    }
    ++level_;
    return 0;
}

int HBXConfigurationIterator::createSubPath(const std::string& name) {
    if ((level_ == kSectionLevel && iterator_->putChild(internal::kSettings) != 0) ||
        iterator_->putChild(name) != 0) {
        return -1;
    }
    ++level_;
    return 0;
}

int HBXConfigurationIterator::followPath(std::string_view path, bool create) {
    savePath();
    if (path.starts_with(kSeparator)) {
        if (seekRoot() != 0) {
            return -1;
        }
        path.remove_prefix(1);
        if (path.empty()) {
            return 0;
        }
    }
    for (;;) {
        const std::size_t end = path.find(kSeparator);
        const std::string name(path.substr(0, end));
        if ((create ? createSubPath(name) : seekSubPath(name)) != 0) {
            return -1;
        }
        if (end == std::string_view::npos) {
            return 0;
        }
        path.remove_prefix(end + 1);
    }
}

int HBXConfigurationIterator::adjustLevel() {
    if (level_ == kSectionLevel && iterator_->seek(internal::kSettings) != 0) {
        return -1;
    }
    savePath();
    ++level_;
    return 0;
}

void HBXConfigurationIterator::savePath() {
    demand(iterator_ != nullptr, __LINE__, "HBX::HBXConfigurationIterator::savePath");
    if (savedIterator_ == nullptr) {
        savedIterator_ = std::move(spareIterator_);
    }
    if (savedIterator_.use_count() != 1 || savedIterator_->seekTo(*iterator_) != 0) {
        savedIterator_.reset(iterator_->newIterator(true));
    }
    savedLevel_ = level_;
}

void HBXConfigurationIterator::restorePath() {
    demand(savedIterator_ != nullptr, __LINE__, "HBX::HBXConfigurationIterator::restorePath");
    level_ = savedLevel_;
    spareIterator_ = std::move(iterator_);
    iterator_ = std::move(savedIterator_);
}

} // namespace HBX
