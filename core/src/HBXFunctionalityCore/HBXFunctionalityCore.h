#pragma once

/// Everything that the library offers.

#include <HBXFunctionalityCore/HBXCatalogue.h>
#include <HBXFunctionalityCore/alert/HBXAlertData.h>
#include <HBXFunctionalityCore/environment/HBXEnv.h>
#include <HBXFunctionalityCore/environment/HBXEnvCache.h>
#include <HBXFunctionalityCore/environment/HBXEnvChildFactory.h>
#include <HBXFunctionalityCore/environment/HBXEnvConfig.h>
#include <HBXFunctionalityCore/environment/HBXEnvCoreBasic.h>
#include <HBXFunctionalityCore/environment/HBXEnvCoreBasicMaintainer.h>
#include <HBXFunctionalityCore/environment/HBXEnvFactory.h>
#include <HBXFunctionalityCore/environment/HBXEnvStatus.h>
#include <HBXFunctionalityCore/environment/HBXEnvUpdater.h>
#include <HBXFunctionalityCore/environment/HBXIPAddress.h>
#include <HBXFunctionalityCore/environment/HBXOS.h>
#include <HBXFunctionalityCore/environment/HBXQoS.h>
#include <HBXFunctionalityCore/environment/HBXVEnvConfig.h>
#include <HBXFunctionalityCore/environment/HBXVtSettings.h>
#include <HBXFunctionalityCore/environment/HBXVtVersion.h>
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
#include <HBXFunctionalityCore/time/HBXDate.h>
#include <HBXFunctionalityCore/time/HBXTimeInterval.h>
#include <HBXFunctionalityCore/time/HBXTimeZone.h>
#include <HBXMessage/HBXEncoding.h>
#include <HBXMessage/HBXMessage.h>
