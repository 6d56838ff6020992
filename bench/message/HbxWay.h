#pragma once

#include <cstdlib>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <HBXMessage/HBXEncoding.h>
#include <HBXMessage/HBXMessage.h>

#include "HandWritten.h"
#include "Way.h"

/// Our ways. The cursors are called through the shared library, so nothing that is virtual is resolved here.
namespace HBX::bench {

/// Straight to bytes and from them, unchecked.
template <class Record>
class TrustedWay final : public Way<Record> {
public:
    std::size_t roundTrip(const Record& in, Record& out) override {
        return encodeRecord(in, bytes_) == 0 && decodeTrustedRecord(bytes_, out) == 0 ? bytes_.size() : 0;
    }

private:
    std::string bytes_;
};

/// The same with the bytes checked as a whole before they are read.
template <class Record>
class CheckedWay final : public Way<Record> {
public:
    std::size_t roundTrip(const Record& in, Record& out) override {
        return encodeRecord(in, bytes_) == 0 && decodeRecord(bytes_, out) == 0 ? bytes_.size() : 0;
    }

private:
    std::string bytes_;
};

/// Through a tree on both sides: the message objects are used again, cursors are made as callers do.
template <class Record>
class TreeWay final : public Way<Record> {
public:
    std::size_t roundTrip(const Record& in, Record& out) override {
        char* data = nullptr;
        int length = 0;
        if (!encode(in, data, length)) {
            return 0;
        }
        const bool good = parsed_->init(data, length) == 0 &&
                          std::unique_ptr<HBXMessageIterator>(parsed_->newIterator())->getObject(out, 0) == 0;
        std::free(data);
        return good ? static_cast<std::size_t>(length) : 0;
    }

private:
    bool encode(const Record& in, char*& data, int& length) {
        return written_->create(0) == 0 &&
               std::unique_ptr<HBXMessageIterator>(written_->newIterator())->putObject(in, 0) == 0 &&
               written_->serialize(&data, &length, nullptr, 0) == 0;
    }

    boost::intrusive_ptr<HBXMessage> written_ = adoptMessage(HBXMsgFactory::createNew());
    boost::intrusive_ptr<HBXMessage> parsed_ = adoptMessage(HBXMsgFactory::createNew());
};

/// As TrustedWay, with the reader and the writer made by hand.
class HandWay final : public Way<Environment> {
public:
    std::size_t roundTrip(const Environment& in, Environment& out) override {
        return encode(in, bytes_) && decodeTrustedMessage(bytes_, readCall(out)) == 0 ? bytes_.size() : 0;
    }

    /// The bytes are also those that the table makes.
    bool works(const Environment& in) override {
        std::string byTable;
        return Way::works(in) && encodeRecord(in, byTable) == 0 && byTable == bytes_;
    }

private:
    static bool encode(const Environment& in, std::string& bytes) {
        const auto run = [](HBXMessageIterator& it, const void* value) {
            return writeByHand(it, *static_cast<const Environment*>(value));
        };
        return encodeMessage({run, &in}, bytes) == 0;
    }

    static HBXReadCall readCall(Environment& out) {
        return {[](const HBXMessageIterator& it, void* value) {
                    return readByHand(it, *static_cast<Environment*>(value));
                },
                &out};
    }

    std::string bytes_;
};

} // namespace HBX::bench
