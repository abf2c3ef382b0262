#ifndef ZEBCOMN_UTIL_DATA_CONSTANTS_H_
#define ZEBCOMN_UTIL_DATA_CONSTANTS_H_

/// \file
/// The names of the agent's configuration sections and keys, so that every component spells them
/// the same way. Names of policy and properties are wide, names of the task scheduler narrow.
///
/// Prefixes: `section_` for a policy section; `key_`, the section's short name and `_` for a key in
/// it (`ls` listen server, `sl` site list, `vc` version control, `inetmgr` internet manager);
/// `props_` for the agent's properties. The values carry the vocabulary's own type prefixes: `b` a
/// boolean, `ui` and `n` a number, `sz` a text. A password key names where a password is stored.
///
/// The objects exist from the library's static initialisation to the end of the process; code that
/// runs in another library's static initialisation must not rely on them. They are not const
/// because callers' object files hold their names; nobody may change them, so any thread may read.
///
/// \par Example
/// \include configuration_names.cpp

#include <string>

#include "zebcomn/export.h"

namespace quenty_com::pelu {

/// \name Policy sections
/// @{
ZEBCOMN_EXPORT extern std::wstring section_general;          ///< "General".
ZEBCOMN_EXPORT extern std::wstring section_network;          ///< "Network".
ZEBCOMN_EXPORT extern std::wstring section_listenserver;     ///< "AgentListenServer".
ZEBCOMN_EXPORT extern std::wstring section_events;           ///< "AgentEvents".
ZEBCOMN_EXPORT extern std::wstring section_logging;          ///< "AgentLogging".
ZEBCOMN_EXPORT extern std::wstring section_sitelist;         ///< "SiteList".
ZEBCOMN_EXPORT extern std::wstring section_proxy;            ///< "ProxySettings".
ZEBCOMN_EXPORT extern std::wstring section_version_control;  ///< "VersionControl".
ZEBCOMN_EXPORT extern std::wstring section_inetmanager;      ///< "InetManager".
ZEBCOMN_EXPORT extern std::wstring section_advanced;         ///< "Advanced".
/// @}

/// \name General, network, listen-server and event keys
/// @{
ZEBCOMN_EXPORT extern std::wstring key_EnforcePolicy;              ///< "EnforcePolicy".
ZEBCOMN_EXPORT extern std::wstring key_general_bCollectFullProps;  ///< "bCollectFullProps".
/// "PolicyEnforcementInterval".
ZEBCOMN_EXPORT extern std::wstring key_general_PolicyEnforcementInterval;
ZEBCOMN_EXPORT extern std::wstring key_general_force_install;  ///< "ForceInstall".
ZEBCOMN_EXPORT extern std::wstring key_network_bAgentASCI;     ///< "bAgentASCI".
ZEBCOMN_EXPORT extern std::wstring key_network_asci_interval;  ///< "CheckNetworkMessageInterval".
ZEBCOMN_EXPORT extern std::wstring key_network_asci_do_when;   ///< "AsciDoWhen".
ZEBCOMN_EXPORT extern std::wstring key_ls_bEnableAgentPing;    ///< "bEnableAgentPing".
ZEBCOMN_EXPORT extern std::wstring key_ls_AgentPingPort;       ///< "AgentPingPort".
ZEBCOMN_EXPORT extern std::wstring key_ls_bListenToKZUServerOnly;  ///< "bListenToKZUServerOnly".
ZEBCOMN_EXPORT extern std::wstring key_events_EnableEventTrigger;  ///< "AgPlcyEnableEventTrigger".
/// "AgPlcyEventTriggerThreshold".
ZEBCOMN_EXPORT extern std::wstring key_events_EventTriggerThreshold;
/// "AgPlcyEventTriggerDelayMins".
ZEBCOMN_EXPORT extern std::wstring key_events_EventTriggerDelayMins;
/// "AgPlcyMaxEventsPerTrigger".
ZEBCOMN_EXPORT extern std::wstring key_events_MaxEventsPerTrigger;
/// @}

/// \name Logging keys
/// @{
ZEBCOMN_EXPORT extern std::wstring key_log_bEnableLog;        ///< "bEnableLog".
ZEBCOMN_EXPORT extern std::wstring key_log_bLimitLogSize;     ///< "bLimitLogSize".
ZEBCOMN_EXPORT extern std::wstring key_log_nLogSizeLimit;     ///< "nLogSizeLimit".
ZEBCOMN_EXPORT extern std::wstring key_log_bVerbose;          ///< "bVerbose".
ZEBCOMN_EXPORT extern std::wstring key_log_bEnableRemoteLog;  ///< "bEnableRemoteLog".
/// @}

/// \name Site-list keys
/// @{
ZEBCOMN_EXPORT extern std::wstring key_sl_NumberOfSites;       ///< "uiNumberOfSites".
ZEBCOMN_EXPORT extern std::wstring key_sl_protocol;            ///< "uiSiteType".
ZEBCOMN_EXPORT extern std::wstring key_sl_enabled;             ///< "bEnabled".
ZEBCOMN_EXPORT extern std::wstring key_sl_site_id;             ///< "szID".
ZEBCOMN_EXPORT extern std::wstring key_sl_site_name;           ///< "szName".
ZEBCOMN_EXPORT extern std::wstring key_sl_sites_server;        ///< "szServer".
ZEBCOMN_EXPORT extern std::wstring key_sl_server_name;         ///< "szServerName".
ZEBCOMN_EXPORT extern std::wstring key_sl_server_ip;           ///< "szServerIP".
ZEBCOMN_EXPORT extern std::wstring key_sl_share_name;          ///< "szShareName".
ZEBCOMN_EXPORT extern std::wstring key_sl_relative_path;       ///< "szRelativePath".
ZEBCOMN_EXPORT extern std::wstring key_sl_site_port;           ///< "uiPort".
ZEBCOMN_EXPORT extern std::wstring key_sl_type;                ///< "uiType".
ZEBCOMN_EXPORT extern std::wstring key_sl_use_auth;            ///< "bUseAuth".
ZEBCOMN_EXPORT extern std::wstring key_sl_user_name;           ///< "szUserName".
ZEBCOMN_EXPORT extern std::wstring key_sl_password;            ///< "szPassword".
ZEBCOMN_EXPORT extern std::wstring key_sl_password_encrypted;  ///< "bEncrypted".
ZEBCOMN_EXPORT extern std::wstring key_sl_domain;              ///< "szDomainName".
ZEBCOMN_EXPORT extern std::wstring key_sl_order;               ///< "uiOrder".
ZEBCOMN_EXPORT extern std::wstring key_sl_local;               ///< "bLocal".
/// @}

/// \name Proxy keys
/// @{
ZEBCOMN_EXPORT extern std::wstring key_proxy_type;            ///< "uiUseProxyType".
ZEBCOMN_EXPORT extern std::wstring key_proxy_http_server;     ///< "szHttpProxyServer".
ZEBCOMN_EXPORT extern std::wstring key_proxy_http_port;       ///< "uiHttpProxyPort".
ZEBCOMN_EXPORT extern std::wstring key_proxy_http_use_auth;   ///< "bUseHttpAuthentication".
ZEBCOMN_EXPORT extern std::wstring key_proxy_http_user;       ///< "szHttpProxyUser".
ZEBCOMN_EXPORT extern std::wstring key_proxy_http_password;   ///< "szHttpProxyPassword".
ZEBCOMN_EXPORT extern std::wstring key_proxy_ftp_server;      ///< "szFtpProxyServer".
ZEBCOMN_EXPORT extern std::wstring key_proxy_ftp_port;        ///< "uiFtpProxyPort".
ZEBCOMN_EXPORT extern std::wstring key_proxy_ftp_use_auth;    ///< "bUseFtpAuthentication".
ZEBCOMN_EXPORT extern std::wstring key_proxy_ftp_user;        ///< "szFtpProxyUser".
ZEBCOMN_EXPORT extern std::wstring key_proxy_ftp_password;    ///< "szFtpProxyPassword".
ZEBCOMN_EXPORT extern std::wstring key_proxy_num_exceptions;  ///< "uiNumExceptions".
ZEBCOMN_EXPORT extern std::wstring key_proxy_exception;       ///< "Exception".
ZEBCOMN_EXPORT extern std::wstring key_proxy_bypass_local;    ///< "bBypassLocalAddress".
/// @}

/// \name Version-control, internet-manager and advanced keys
/// @{
ZEBCOMN_EXPORT extern std::wstring key_vc_version;                  ///< "Version".
ZEBCOMN_EXPORT extern std::wstring key_inetmgr_total_sites;         ///< "SitelistOrderNum".
ZEBCOMN_EXPORT extern std::wstring key_inetmgr_disabled_sites;      ///< "DisabledSiteNum".
ZEBCOMN_EXPORT extern std::wstring key_inetmgr_sl_order;            ///< "SitelistOrder".
ZEBCOMN_EXPORT extern std::wstring key_inetmgr_sl_disabled_site;    ///< "DisabledSites".
ZEBCOMN_EXPORT extern std::wstring key_advanced_FindNearestMethod;  ///< "uiFindNearestMethod".
/// "OverwriteClientSites".
ZEBCOMN_EXPORT extern std::wstring key_advanced_overwrite_client_sites;
/// @}

/// \name Agent-properties section and keys
/// @{
ZEBCOMN_EXPORT extern std::wstring props_section_general;       ///< "General".
ZEBCOMN_EXPORT extern std::wstring props_key_installed_path;    ///< "szInstallDir".
ZEBCOMN_EXPORT extern std::wstring props_key_product_version;   ///< "szProductVer".
ZEBCOMN_EXPORT extern std::wstring props_key_hotfix_version;    ///< "Hotfix".
ZEBCOMN_EXPORT extern std::wstring props_key_show_ui;           ///< "ShowAgentUI".
ZEBCOMN_EXPORT extern std::wstring props_key_show_reboot_ui;    ///< "ShowRebootUI".
ZEBCOMN_EXPORT extern std::wstring props_key_reboot_timeout;    ///< "RebootTimeOut".
ZEBCOMN_EXPORT extern std::wstring props_key_plugin_version;    ///< "PluginVersion".
ZEBCOMN_EXPORT extern std::wstring props_key_language;          ///< "Language".
ZEBCOMN_EXPORT extern std::wstring props_key_agent_guid;        ///< "AgentGUID".
ZEBCOMN_EXPORT extern std::wstring props_key_asci;              ///< "CheckNetworkMessageInterval".
ZEBCOMN_EXPORT extern std::wstring props_key_refresh_interval;  ///< "PropsRefreshInterval".
/// @}

/// \name Task and schedule sections and keys
/// @{
ZEBCOMN_EXPORT extern std::string TaskNameKey;                ///< "DisplayName".
ZEBCOMN_EXPORT extern std::string PlatformsKey;               ///< "Platforms".
ZEBCOMN_EXPORT extern std::string TaskGuidKey;                ///< "TaskID".
ZEBCOMN_EXPORT extern std::string SoftwareIdKey;              ///< "SoftwareID".
ZEBCOMN_EXPORT extern std::string PriorityKey;                ///< "Priority".
ZEBCOMN_EXPORT extern std::string VersionKey;                 ///< "TaskVersion".
ZEBCOMN_EXPORT extern std::string TaskTypeKey;                ///< "TaskType".
ZEBCOMN_EXPORT extern std::string CreatorSoftwareKey;         ///< "CreatorID".
ZEBCOMN_EXPORT extern std::string PendingKey;                 ///< "TaskPending".
ZEBCOMN_EXPORT extern std::string TaskSection;                ///< "Task".
ZEBCOMN_EXPORT extern std::string TaskGroupSection;           ///< "TaskGroup".
ZEBCOMN_EXPORT extern std::string GeneralSection;             ///< "General".
ZEBCOMN_EXPORT extern std::string TaskRoot;                   ///< "TaskRoot".
ZEBCOMN_EXPORT extern std::string SettingsSection;            ///< "Settings".
ZEBCOMN_EXPORT extern std::string EnabledKey;                 ///< "Enabled".
ZEBCOMN_EXPORT extern std::string StopAfterMinutesKey;        ///< "StopAfterMinutes".
ZEBCOMN_EXPORT extern std::string DeleteWhenFinishedKey;      ///< "DeleteWhenFinished".
ZEBCOMN_EXPORT extern std::string Schedule_Section;           ///< "Schedule".
ZEBCOMN_EXPORT extern std::string StartDateTime_Key;          ///< "StartDateTime".
ZEBCOMN_EXPORT extern std::string StopDateTime_Key;           ///< "StopDateTime".
ZEBCOMN_EXPORT extern std::string StopTimeSpecified_Key;      ///< "StopDateValid".
ZEBCOMN_EXPORT extern std::string ScheduleType_Key;           ///< "Type".
ZEBCOMN_EXPORT extern std::string IdleMinutes_Key;            ///< "IdleMinutes".
ZEBCOMN_EXPORT extern std::string RunIfMissed_Key;            ///< "RunIfMissed".
ZEBCOMN_EXPORT extern std::string RunIfMissedDelay_Key;       ///< "RunIfMissedDelayMins".
ZEBCOMN_EXPORT extern std::string AtStartupDelayMinutes_Key;  ///< "AtStartupDelayMinutes".
ZEBCOMN_EXPORT extern std::string RandomizationEnabled_Key;   ///< "RandomizationEnabled".
ZEBCOMN_EXPORT extern std::string RandomizationInterval_Key;  ///< "RandomizationWndMins".
ZEBCOMN_EXPORT extern std::string TaskRepeatable_Key;         ///< "TaskRepeatable".
ZEBCOMN_EXPORT extern std::string RepeatOption_Key;           ///< "RepeatOption".
ZEBCOMN_EXPORT extern std::string RepeatInterval_Key;         ///< "RepeatInterval".
ZEBCOMN_EXPORT extern std::string UntilOption_Key;            ///< "UntilOption".
ZEBCOMN_EXPORT extern std::string UntilDuration_Key;          ///< "UntilDuration".
ZEBCOMN_EXPORT extern std::string UntilTime_Key;              ///< "UntilTime".
ZEBCOMN_EXPORT extern std::string GMT_Key;                    ///< "GMTTime".
ZEBCOMN_EXPORT extern std::string TaskFinished_Key;           ///< "TaskFinished".
ZEBCOMN_EXPORT extern std::string RepeatDays_Key;             ///< "RepeatDays".
ZEBCOMN_EXPORT extern std::string DaysOfWeek_Key;             ///< "MaskDaysOfWeek".
ZEBCOMN_EXPORT extern std::string RepeatWeeks_Key;            ///< "RepeatWeeks".
ZEBCOMN_EXPORT extern std::string MonthOption_Key;            ///< "MonthOption".
ZEBCOMN_EXPORT extern std::string DayNumOfMonth_Key;          ///< "DayNumOfMonth".
ZEBCOMN_EXPORT extern std::string WeekNumOfMonth_Key;         ///< "WeekNumOfMonth".
ZEBCOMN_EXPORT extern std::string DayOfWeek_Key;              ///< "DayOfWeek".
ZEBCOMN_EXPORT extern std::string MaskMonthsOfYear_Key;       ///< "MaskMonthsOfYear".
ZEBCOMN_EXPORT extern std::string DependenciesSection;        ///< "Task Dependencies".
ZEBCOMN_EXPORT extern std::string Dependency_I_Key;           ///< "Dependency".
ZEBCOMN_EXPORT extern std::string NumDependencies_Key;        ///< "NumberOfDependencies".
ZEBCOMN_EXPORT extern std::string EnableRunTaskOnceADay_Key;  ///< "EnableRunTaskOnceADay".
/// @}

}  // namespace quenty_com::pelu

#endif  // ZEBCOMN_UTIL_DATA_CONSTANTS_H_
