#pragma once

#include <string>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <HBXFunctionalityCore/schedule/HBXSchedulerTrigger.h>

namespace HBX::tool {

/// The first element of a message, in document order, whose complex type is that of a trigger.
/// @throws Failure  the file is no message, holds no trigger, or the trigger does not read.
boost::shared_ptr<HBXSchedulerTrigger> loadTrigger(const std::string& file);

} // namespace HBX::tool
