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

#include <string>

#include "zebcomn/export.h"

namespace quenty_com::pelu {

// Policy sections.
ZEBCOMN_EXPORT extern std::wstring section_general;
ZEBCOMN_EXPORT extern std::wstring section_network;
ZEBCOMN_EXPORT extern std::wstring section_listenserver;
ZEBCOMN_EXPORT extern std::wstring section_events;
ZEBCOMN_EXPORT extern std::wstring section_logging;
ZEBCOMN_EXPORT extern std::wstring section_sitelist;
ZEBCOMN_EXPORT extern std::wstring section_proxy;
ZEBCOMN_EXPORT extern std::wstring section_version_control;
ZEBCOMN_EXPORT extern std::wstring section_inetmanager;
ZEBCOMN_EXPORT extern std::wstring section_advanced;

// General, network, listen-server and event keys.
ZEBCOMN_EXPORT extern std::wstring key_EnforcePolicy;
ZEBCOMN_EXPORT extern std::wstring key_general_bCollectFullProps;
ZEBCOMN_EXPORT extern std::wstring key_general_PolicyEnforcementInterval;
ZEBCOMN_EXPORT extern std::wstring key_general_force_install;
ZEBCOMN_EXPORT extern std::wstring key_network_bAgentASCI;
ZEBCOMN_EXPORT extern std::wstring key_network_asci_interval;
ZEBCOMN_EXPORT extern std::wstring key_network_asci_do_when;
ZEBCOMN_EXPORT extern std::wstring key_ls_bEnableAgentPing;
ZEBCOMN_EXPORT extern std::wstring key_ls_AgentPingPort;
ZEBCOMN_EXPORT extern std::wstring key_ls_bListenToKZUServerOnly;
ZEBCOMN_EXPORT extern std::wstring key_events_EnableEventTrigger;
ZEBCOMN_EXPORT extern std::wstring key_events_EventTriggerThreshold;
ZEBCOMN_EXPORT extern std::wstring key_events_EventTriggerDelayMins;
ZEBCOMN_EXPORT extern std::wstring key_events_MaxEventsPerTrigger;

// Logging keys.
ZEBCOMN_EXPORT extern std::wstring key_log_bEnableLog;
ZEBCOMN_EXPORT extern std::wstring key_log_bLimitLogSize;
ZEBCOMN_EXPORT extern std::wstring key_log_nLogSizeLimit;
ZEBCOMN_EXPORT extern std::wstring key_log_bVerbose;
ZEBCOMN_EXPORT extern std::wstring key_log_bEnableRemoteLog;

// Site-list keys.
ZEBCOMN_EXPORT extern std::wstring key_sl_NumberOfSites;
ZEBCOMN_EXPORT extern std::wstring key_sl_protocol;
ZEBCOMN_EXPORT extern std::wstring key_sl_enabled;
ZEBCOMN_EXPORT extern std::wstring key_sl_site_id;
ZEBCOMN_EXPORT extern std::wstring key_sl_site_name;
ZEBCOMN_EXPORT extern std::wstring key_sl_sites_server;
ZEBCOMN_EXPORT extern std::wstring key_sl_server_name;
ZEBCOMN_EXPORT extern std::wstring key_sl_server_ip;
ZEBCOMN_EXPORT extern std::wstring key_sl_share_name;
ZEBCOMN_EXPORT extern std::wstring key_sl_relative_path;
ZEBCOMN_EXPORT extern std::wstring key_sl_site_port;
ZEBCOMN_EXPORT extern std::wstring key_sl_type;
ZEBCOMN_EXPORT extern std::wstring key_sl_use_auth;
ZEBCOMN_EXPORT extern std::wstring key_sl_user_name;
ZEBCOMN_EXPORT extern std::wstring key_sl_password;
ZEBCOMN_EXPORT extern std::wstring key_sl_password_encrypted;
ZEBCOMN_EXPORT extern std::wstring key_sl_domain;
ZEBCOMN_EXPORT extern std::wstring key_sl_order;
ZEBCOMN_EXPORT extern std::wstring key_sl_local;

// Proxy keys.
ZEBCOMN_EXPORT extern std::wstring key_proxy_type;
ZEBCOMN_EXPORT extern std::wstring key_proxy_http_server;
ZEBCOMN_EXPORT extern std::wstring key_proxy_http_port;
ZEBCOMN_EXPORT extern std::wstring key_proxy_http_use_auth;
ZEBCOMN_EXPORT extern std::wstring key_proxy_http_user;
ZEBCOMN_EXPORT extern std::wstring key_proxy_http_password;
ZEBCOMN_EXPORT extern std::wstring key_proxy_ftp_server;
ZEBCOMN_EXPORT extern std::wstring key_proxy_ftp_port;
ZEBCOMN_EXPORT extern std::wstring key_proxy_ftp_use_auth;
ZEBCOMN_EXPORT extern std::wstring key_proxy_ftp_user;
ZEBCOMN_EXPORT extern std::wstring key_proxy_ftp_password;
ZEBCOMN_EXPORT extern std::wstring key_proxy_num_exceptions;
ZEBCOMN_EXPORT extern std::wstring key_proxy_exception;
ZEBCOMN_EXPORT extern std::wstring key_proxy_bypass_local;

// Version-control, internet-manager and advanced keys.
ZEBCOMN_EXPORT extern std::wstring key_vc_version;
ZEBCOMN_EXPORT extern std::wstring key_inetmgr_total_sites;
ZEBCOMN_EXPORT extern std::wstring key_inetmgr_disabled_sites;
ZEBCOMN_EXPORT extern std::wstring key_inetmgr_sl_order;
ZEBCOMN_EXPORT extern std::wstring key_inetmgr_sl_disabled_site;
ZEBCOMN_EXPORT extern std::wstring key_advanced_FindNearestMethod;
ZEBCOMN_EXPORT extern std::wstring key_advanced_overwrite_client_sites;

// Agent-properties section and keys.
ZEBCOMN_EXPORT extern std::wstring props_section_general;
ZEBCOMN_EXPORT extern std::wstring props_key_installed_path;
ZEBCOMN_EXPORT extern std::wstring props_key_product_version;
ZEBCOMN_EXPORT extern std::wstring props_key_hotfix_version;
ZEBCOMN_EXPORT extern std::wstring props_key_show_ui;
ZEBCOMN_EXPORT extern std::wstring props_key_show_reboot_ui;
ZEBCOMN_EXPORT extern std::wstring props_key_reboot_timeout;
ZEBCOMN_EXPORT extern std::wstring props_key_plugin_version;
ZEBCOMN_EXPORT extern std::wstring props_key_language;
ZEBCOMN_EXPORT extern std::wstring props_key_agent_guid;
ZEBCOMN_EXPORT extern std::wstring props_key_asci;
ZEBCOMN_EXPORT extern std::wstring props_key_refresh_interval;

// Task and schedule sections and keys.
ZEBCOMN_EXPORT extern std::string TaskNameKey;
ZEBCOMN_EXPORT extern std::string PlatformsKey;
ZEBCOMN_EXPORT extern std::string TaskGuidKey;
ZEBCOMN_EXPORT extern std::string SoftwareIdKey;
ZEBCOMN_EXPORT extern std::string PriorityKey;
ZEBCOMN_EXPORT extern std::string VersionKey;
ZEBCOMN_EXPORT extern std::string TaskTypeKey;
ZEBCOMN_EXPORT extern std::string CreatorSoftwareKey;
ZEBCOMN_EXPORT extern std::string PendingKey;
ZEBCOMN_EXPORT extern std::string TaskSection;
ZEBCOMN_EXPORT extern std::string TaskGroupSection;
ZEBCOMN_EXPORT extern std::string GeneralSection;
ZEBCOMN_EXPORT extern std::string TaskRoot;
ZEBCOMN_EXPORT extern std::string SettingsSection;
ZEBCOMN_EXPORT extern std::string EnabledKey;
ZEBCOMN_EXPORT extern std::string StopAfterMinutesKey;
ZEBCOMN_EXPORT extern std::string DeleteWhenFinishedKey;
ZEBCOMN_EXPORT extern std::string Schedule_Section;
ZEBCOMN_EXPORT extern std::string StartDateTime_Key;
ZEBCOMN_EXPORT extern std::string StopDateTime_Key;
ZEBCOMN_EXPORT extern std::string StopTimeSpecified_Key;
ZEBCOMN_EXPORT extern std::string ScheduleType_Key;
ZEBCOMN_EXPORT extern std::string IdleMinutes_Key;
ZEBCOMN_EXPORT extern std::string RunIfMissed_Key;
ZEBCOMN_EXPORT extern std::string RunIfMissedDelay_Key;
ZEBCOMN_EXPORT extern std::string AtStartupDelayMinutes_Key;
ZEBCOMN_EXPORT extern std::string RandomizationEnabled_Key;
ZEBCOMN_EXPORT extern std::string RandomizationInterval_Key;
ZEBCOMN_EXPORT extern std::string TaskRepeatable_Key;
ZEBCOMN_EXPORT extern std::string RepeatOption_Key;
ZEBCOMN_EXPORT extern std::string RepeatInterval_Key;
ZEBCOMN_EXPORT extern std::string UntilOption_Key;
ZEBCOMN_EXPORT extern std::string UntilDuration_Key;
ZEBCOMN_EXPORT extern std::string UntilTime_Key;
ZEBCOMN_EXPORT extern std::string GMT_Key;
ZEBCOMN_EXPORT extern std::string TaskFinished_Key;
ZEBCOMN_EXPORT extern std::string RepeatDays_Key;
ZEBCOMN_EXPORT extern std::string DaysOfWeek_Key;
ZEBCOMN_EXPORT extern std::string RepeatWeeks_Key;
ZEBCOMN_EXPORT extern std::string MonthOption_Key;
ZEBCOMN_EXPORT extern std::string DayNumOfMonth_Key;
ZEBCOMN_EXPORT extern std::string WeekNumOfMonth_Key;
ZEBCOMN_EXPORT extern std::string DayOfWeek_Key;
ZEBCOMN_EXPORT extern std::string MaskMonthsOfYear_Key;
ZEBCOMN_EXPORT extern std::string DependenciesSection;
ZEBCOMN_EXPORT extern std::string Dependency_I_Key;
ZEBCOMN_EXPORT extern std::string NumDependencies_Key;
ZEBCOMN_EXPORT extern std::string EnableRunTaskOnceADay_Key;

}  // namespace quenty_com::pelu

#endif  // ZEBCOMN_UTIL_DATA_CONSTANTS_H_
