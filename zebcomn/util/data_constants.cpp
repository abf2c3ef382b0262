#include "zebcomn/util/data_constants.h"

namespace quenty_com::pelu {

// One unit, because the order of construction is the order of these lines. Two texts occur twice,
// in objects of their own: "General" and "CheckNetworkMessageInterval".

// Policy sections.
std::wstring section_general = L"General";
std::wstring section_network = L"Network";
std::wstring section_listenserver = L"AgentListenServer";
std::wstring section_events = L"AgentEvents";
std::wstring section_logging = L"AgentLogging";
std::wstring section_sitelist = L"SiteList";
std::wstring section_proxy = L"ProxySettings";
std::wstring section_version_control = L"VersionControl";
std::wstring section_inetmanager = L"InetManager";
std::wstring section_advanced = L"Advanced";

// General, network, listen-server and event keys.
std::wstring key_EnforcePolicy = L"EnforcePolicy";
std::wstring key_general_bCollectFullProps = L"bCollectFullProps";
std::wstring key_general_PolicyEnforcementInterval = L"PolicyEnforcementInterval";
std::wstring key_general_force_install = L"ForceInstall";
std::wstring key_network_bAgentASCI = L"bAgentASCI";
std::wstring key_network_asci_interval = L"CheckNetworkMessageInterval";
std::wstring key_network_asci_do_when = L"AsciDoWhen";
std::wstring key_ls_bEnableAgentPing = L"bEnableAgentPing";
std::wstring key_ls_AgentPingPort = L"AgentPingPort";
std::wstring key_ls_bListenToKZUServerOnly = L"bListenToKZUServerOnly";
std::wstring key_events_EnableEventTrigger = L"AgPlcyEnableEventTrigger";
std::wstring key_events_EventTriggerThreshold = L"AgPlcyEventTriggerThreshold";
std::wstring key_events_EventTriggerDelayMins = L"AgPlcyEventTriggerDelayMins";
std::wstring key_events_MaxEventsPerTrigger = L"AgPlcyMaxEventsPerTrigger";

// Logging keys.
std::wstring key_log_bEnableLog = L"bEnableLog";
std::wstring key_log_bLimitLogSize = L"bLimitLogSize";
std::wstring key_log_nLogSizeLimit = L"nLogSizeLimit";
std::wstring key_log_bVerbose = L"bVerbose";
std::wstring key_log_bEnableRemoteLog = L"bEnableRemoteLog";

// Site-list keys.
std::wstring key_sl_NumberOfSites = L"uiNumberOfSites";
std::wstring key_sl_protocol = L"uiSiteType";
std::wstring key_sl_enabled = L"bEnabled";
std::wstring key_sl_site_id = L"szID";
std::wstring key_sl_site_name = L"szName";
std::wstring key_sl_sites_server = L"szServer";
std::wstring key_sl_server_name = L"szServerName";
std::wstring key_sl_server_ip = L"szServerIP";
std::wstring key_sl_share_name = L"szShareName";
std::wstring key_sl_relative_path = L"szRelativePath";
std::wstring key_sl_site_port = L"uiPort";
std::wstring key_sl_type = L"uiType";
std::wstring key_sl_use_auth = L"bUseAuth";
std::wstring key_sl_user_name = L"szUserName";
std::wstring key_sl_password = L"szPassword";
std::wstring key_sl_password_encrypted = L"bEncrypted";
std::wstring key_sl_domain = L"szDomainName";
std::wstring key_sl_order = L"uiOrder";
std::wstring key_sl_local = L"bLocal";

// Proxy keys.
std::wstring key_proxy_type = L"uiUseProxyType";
std::wstring key_proxy_http_server = L"szHttpProxyServer";
std::wstring key_proxy_http_port = L"uiHttpProxyPort";
std::wstring key_proxy_http_use_auth = L"bUseHttpAuthentication";
std::wstring key_proxy_http_user = L"szHttpProxyUser";
std::wstring key_proxy_http_password = L"szHttpProxyPassword";
std::wstring key_proxy_ftp_server = L"szFtpProxyServer";
std::wstring key_proxy_ftp_port = L"uiFtpProxyPort";
std::wstring key_proxy_ftp_use_auth = L"bUseFtpAuthentication";
std::wstring key_proxy_ftp_user = L"szFtpProxyUser";
std::wstring key_proxy_ftp_password = L"szFtpProxyPassword";
std::wstring key_proxy_num_exceptions = L"uiNumExceptions";
std::wstring key_proxy_exception = L"Exception";
std::wstring key_proxy_bypass_local = L"bBypassLocalAddress";

// Version-control, internet-manager and advanced keys.
std::wstring key_vc_version = L"Version";
std::wstring key_inetmgr_total_sites = L"SitelistOrderNum";
std::wstring key_inetmgr_disabled_sites = L"DisabledSiteNum";
std::wstring key_inetmgr_sl_order = L"SitelistOrder";
std::wstring key_inetmgr_sl_disabled_site = L"DisabledSites";
std::wstring key_advanced_FindNearestMethod = L"uiFindNearestMethod";
std::wstring key_advanced_overwrite_client_sites = L"OverwriteClientSites";

// Agent-properties section and keys.
std::wstring props_section_general = L"General";
std::wstring props_key_installed_path = L"szInstallDir";
std::wstring props_key_product_version = L"szProductVer";
std::wstring props_key_hotfix_version = L"Hotfix";
std::wstring props_key_show_ui = L"ShowAgentUI";
std::wstring props_key_show_reboot_ui = L"ShowRebootUI";
std::wstring props_key_reboot_timeout = L"RebootTimeOut";
std::wstring props_key_plugin_version = L"PluginVersion";
std::wstring props_key_language = L"Language";
std::wstring props_key_agent_guid = L"AgentGUID";
std::wstring props_key_asci = L"CheckNetworkMessageInterval";
std::wstring props_key_refresh_interval = L"PropsRefreshInterval";

// Task and schedule sections and keys.
std::string TaskNameKey = "DisplayName";
std::string PlatformsKey = "Platforms";
std::string TaskGuidKey = "TaskID";
std::string SoftwareIdKey = "SoftwareID";
std::string PriorityKey = "Priority";
std::string VersionKey = "TaskVersion";
std::string TaskTypeKey = "TaskType";
std::string CreatorSoftwareKey = "CreatorID";
std::string PendingKey = "TaskPending";
std::string TaskSection = "Task";
std::string TaskGroupSection = "TaskGroup";
std::string GeneralSection = "General";
std::string TaskRoot = "TaskRoot";
std::string SettingsSection = "Settings";
std::string EnabledKey = "Enabled";
std::string StopAfterMinutesKey = "StopAfterMinutes";
std::string DeleteWhenFinishedKey = "DeleteWhenFinished";
std::string Schedule_Section = "Schedule";
std::string StartDateTime_Key = "StartDateTime";
std::string StopDateTime_Key = "StopDateTime";
std::string StopTimeSpecified_Key = "StopDateValid";
std::string ScheduleType_Key = "Type";
std::string IdleMinutes_Key = "IdleMinutes";
std::string RunIfMissed_Key = "RunIfMissed";
std::string RunIfMissedDelay_Key = "RunIfMissedDelayMins";
std::string AtStartupDelayMinutes_Key = "AtStartupDelayMinutes";
std::string RandomizationEnabled_Key = "RandomizationEnabled";
std::string RandomizationInterval_Key = "RandomizationWndMins";
std::string TaskRepeatable_Key = "TaskRepeatable";
std::string RepeatOption_Key = "RepeatOption";
std::string RepeatInterval_Key = "RepeatInterval";
std::string UntilOption_Key = "UntilOption";
std::string UntilDuration_Key = "UntilDuration";
std::string UntilTime_Key = "UntilTime";
std::string GMT_Key = "GMTTime";
std::string TaskFinished_Key = "TaskFinished";
std::string RepeatDays_Key = "RepeatDays";
std::string DaysOfWeek_Key = "MaskDaysOfWeek";
std::string RepeatWeeks_Key = "RepeatWeeks";
std::string MonthOption_Key = "MonthOption";
std::string DayNumOfMonth_Key = "DayNumOfMonth";
std::string WeekNumOfMonth_Key = "WeekNumOfMonth";
std::string DayOfWeek_Key = "DayOfWeek";
std::string MaskMonthsOfYear_Key = "MaskMonthsOfYear";
std::string DependenciesSection = "Task Dependencies";
std::string Dependency_I_Key = "Dependency";
std::string NumDependencies_Key = "NumberOfDependencies";
std::string EnableRunTaskOnceADay_Key = "EnableRunTaskOnceADay";

}  // namespace quenty_com::pelu
