#include "Side.h"

#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

namespace HBX::bench {
namespace {

class HbxSide final : public Side {
public:
    std::string address(const Name& name) const override { return '/' + name.section + '/' + name.setting; }
    bool open(const std::string& file) override {
        HBXConfiguration configuration;
        if (configuration.readFromFile(file) != 0) {
            return false;
        }
        iterator_.reset(configuration.getIterator());
        return true;
    }
    bool read(const std::string& address, std::string& text) override {
        return iterator_->getValue(text, address) == 0;
    }

private:
    std::unique_ptr<HBXConfigurationIterator> iterator_;
};

} // namespace

std::unique_ptr<Side> makeHbx() { return std::make_unique<HbxSide>(); }

} // namespace HBX::bench
