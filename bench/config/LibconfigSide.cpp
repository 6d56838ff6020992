#include "Side.h"

#include <libconfig.h++>

namespace HBX::bench {
namespace {

class LibconfigSide final : public Side {
public:
    std::string address(const Name& name) const override { return name.section + '.' + name.setting; }
    bool open(const std::string& file) override {
        config_.readFile(file.c_str());
        return true;
    }
    bool read(const std::string& address, std::string& text) override {
        return config_.lookupValue(address, text);
    }

private:
    libconfig::Config config_;
};

} // namespace

std::unique_ptr<Side> makeLibconfig() { return std::make_unique<LibconfigSide>(); }

} // namespace HBX::bench
