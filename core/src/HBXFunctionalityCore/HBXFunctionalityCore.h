#pragma once

/// Everything that the library offers.

#include <HBXCommon/OptionManager.h>
#include <HBXFunctionalityCore/HBXCatalogue.h>
#include <HBXFunctionalityCore/configuration/DebugConfiguration.h>
#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>
#include <HBXFunctionalityCore/configuration/HBXConfigurationIterator.h>
#include <HBXFunctionalityCore/configuration/HBXOptionsFileSerializer.h>
#include <HBXFunctionalityCore/directory/HBXRealm.h>
#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXFunctionalityCore/identity/HBXEIDList.h>
#include <HBXFunctionalityCore/identity/HBXGUID.h>
#include <HBXFunctionalityCore/property/HBXNamedOpStrListProperty.h>
#include <HBXFunctionalityCore/property/HBXProperty.h>
#include <HBXFunctionalityCore/schedule/HBXScheduleText.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerDailyTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerMonthlyDayOfWeekTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerMonthlyTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerOnceTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerWeeklyTrigger.h>
#include <HBXFunctionalityCore/security/HBXAuthName.h>
#include <HBXFunctionalityCore/security/HBXConnectionInfo.h>
#include <HBXFunctionalityCore/time/HBXDate.h>
#include <HBXFunctionalityCore/time/HBXTimeInterval.h>
#include <HBXFunctionalityCore/time/HBXTimeZone.h>
#include <HBXMessage/HBXEncoding.h>
#include <HBXMessage/HBXMessage.h>
