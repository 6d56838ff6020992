#pragma once

/// What clients can subscribe to at an agent; the names are sent.
namespace HBX::subscription {

inline constexpr const char* kAlerts = "alerts_subscription";
inline constexpr const char* kDestroyedBackups = "destroyed_backups_subscription";
inline constexpr const char* kEvents = "events_subscription";
inline constexpr const char* kLog = "log_subscription";
inline constexpr const char* kNewBackup = "new_backup_subscription";
inline constexpr const char* kPackageList = "package_list_subscription";
inline constexpr const char* kResourceAlerts = "resource_alerts_subscription";
inline constexpr const char* kServerGroupAlerts = "server_group_alerts_subscription";
inline constexpr const char* kConfiguration = "hbxconf_subscription";

} // namespace HBX::subscription
