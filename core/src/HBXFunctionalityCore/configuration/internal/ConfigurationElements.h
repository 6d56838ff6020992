#pragma once

/// Elements of the configuration tree.
namespace HBX::internal {

inline constexpr int kTop = 1307;
inline constexpr int kSettings = 1021; ///< the wrapper between a section and its settings

// Sections, below the top element.
inline constexpr int kAgent = 1044;
inline constexpr int kServerGroup = 1875;
inline constexpr int kSecurity = 1858;

// Below the settings of these.
inline constexpr int kIdentifier = 1010;
inline constexpr int kEntry = 1008;
inline constexpr int kMappingTable = 1677;
inline constexpr int kConnectionInfo = 1876;
inline constexpr int kLegacyConnection = 1068;
inline constexpr int kMaster = 1680;
inline constexpr int kClients = 1681;
inline constexpr int kBuiltinRealm = 2016;
inline constexpr int kRealms = 1960;
inline constexpr int kRealm = 1957;

} // namespace HBX::internal
