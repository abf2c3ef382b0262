// Each configuration name beside the text that the agent's stores hold.
#include "zebcomn/util/data_constants.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "tests/support/named_text.h"
#include "tests/util/allocation_record.h"

namespace pelu = quenty_com::pelu;

namespace {

using zebcomn_test::ExpectTexts;
using zebcomn_test::NamedText;

const NamedText<std::wstring> kWideNames[] = {
    {"section_general", &pelu::section_general, L"General"},
    {"section_network", &pelu::section_network, L"Network"},
    {"section_listenserver", &pelu::section_listenserver, L"AgentListenServer"},
    {"section_events", &pelu::section_events, L"AgentEvents"},
    {"section_logging", &pelu::section_logging, L"AgentLogging"},
    {"section_sitelist", &pelu::section_sitelist, L"SiteList"},
    {"section_proxy", &pelu::section_proxy, L"ProxySettings"},
    {"section_version_control", &pelu::section_version_control, L"VersionControl"},
    {"section_inetmanager", &pelu::section_inetmanager, L"InetManager"},
    {"section_advanced", &pelu::section_advanced, L"Advanced"},
    {"key_EnforcePolicy", &pelu::key_EnforcePolicy, L"EnforcePolicy"},
    {"key_general_bCollectFullProps", &pelu::key_general_bCollectFullProps, L"bCollectFullProps"},
    {"key_general_PolicyEnforcementInterval", &pelu::key_general_PolicyEnforcementInterval,
     L"PolicyEnforcementInterval"},
    {"key_general_force_install", &pelu::key_general_force_install, L"ForceInstall"},
    {"key_network_bAgentASCI", &pelu::key_network_bAgentASCI, L"bAgentASCI"},
    {"key_network_asci_interval", &pelu::key_network_asci_interval, L"CheckNetworkMessageInterval"},
    {"key_network_asci_do_when", &pelu::key_network_asci_do_when, L"AsciDoWhen"},
    {"key_ls_bEnableAgentPing", &pelu::key_ls_bEnableAgentPing, L"bEnableAgentPing"},
    {"key_ls_AgentPingPort", &pelu::key_ls_AgentPingPort, L"AgentPingPort"},
    {"key_ls_bListenToKZUServerOnly", &pelu::key_ls_bListenToKZUServerOnly,
     L"bListenToKZUServerOnly"},
    {"key_events_EnableEventTrigger", &pelu::key_events_EnableEventTrigger,
     L"AgPlcyEnableEventTrigger"},
    {"key_events_EventTriggerThreshold", &pelu::key_events_EventTriggerThreshold,
     L"AgPlcyEventTriggerThreshold"},
    {"key_events_EventTriggerDelayMins", &pelu::key_events_EventTriggerDelayMins,
     L"AgPlcyEventTriggerDelayMins"},
    {"key_events_MaxEventsPerTrigger", &pelu::key_events_MaxEventsPerTrigger,
     L"AgPlcyMaxEventsPerTrigger"},
    {"key_log_bEnableLog", &pelu::key_log_bEnableLog, L"bEnableLog"},
    {"key_log_bLimitLogSize", &pelu::key_log_bLimitLogSize, L"bLimitLogSize"},
    {"key_log_nLogSizeLimit", &pelu::key_log_nLogSizeLimit, L"nLogSizeLimit"},
    {"key_log_bVerbose", &pelu::key_log_bVerbose, L"bVerbose"},
    {"key_log_bEnableRemoteLog", &pelu::key_log_bEnableRemoteLog, L"bEnableRemoteLog"},
    {"key_sl_NumberOfSites", &pelu::key_sl_NumberOfSites, L"uiNumberOfSites"},
    {"key_sl_protocol", &pelu::key_sl_protocol, L"uiSiteType"},
    {"key_sl_enabled", &pelu::key_sl_enabled, L"bEnabled"},
    {"key_sl_site_id", &pelu::key_sl_site_id, L"szID"},
    {"key_sl_site_name", &pelu::key_sl_site_name, L"szName"},
    {"key_sl_sites_server", &pelu::key_sl_sites_server, L"szServer"},
    {"key_sl_server_name", &pelu::key_sl_server_name, L"szServerName"},
    {"key_sl_server_ip", &pelu::key_sl_server_ip, L"szServerIP"},
    {"key_sl_share_name", &pelu::key_sl_share_name, L"szShareName"},
    {"key_sl_relative_path", &pelu::key_sl_relative_path, L"szRelativePath"},
    {"key_sl_site_port", &pelu::key_sl_site_port, L"uiPort"},
    {"key_sl_type", &pelu::key_sl_type, L"uiType"},
    {"key_sl_use_auth", &pelu::key_sl_use_auth, L"bUseAuth"},
    {"key_sl_user_name", &pelu::key_sl_user_name, L"szUserName"},
    {"key_sl_password", &pelu::key_sl_password, L"szPassword"},
    {"key_sl_password_encrypted", &pelu::key_sl_password_encrypted, L"bEncrypted"},
    {"key_sl_domain", &pelu::key_sl_domain, L"szDomainName"},
    {"key_sl_order", &pelu::key_sl_order, L"uiOrder"},
    {"key_sl_local", &pelu::key_sl_local, L"bLocal"},
    {"key_proxy_type", &pelu::key_proxy_type, L"uiUseProxyType"},
    {"key_proxy_http_server", &pelu::key_proxy_http_server, L"szHttpProxyServer"},
    {"key_proxy_http_port", &pelu::key_proxy_http_port, L"uiHttpProxyPort"},
    {"key_proxy_http_use_auth", &pelu::key_proxy_http_use_auth, L"bUseHttpAuthentication"},
    {"key_proxy_http_user", &pelu::key_proxy_http_user, L"szHttpProxyUser"},
    {"key_proxy_http_password", &pelu::key_proxy_http_password, L"szHttpProxyPassword"},
    {"key_proxy_ftp_server", &pelu::key_proxy_ftp_server, L"szFtpProxyServer"},
    {"key_proxy_ftp_port", &pelu::key_proxy_ftp_port, L"uiFtpProxyPort"},
    {"key_proxy_ftp_use_auth", &pelu::key_proxy_ftp_use_auth, L"bUseFtpAuthentication"},
    {"key_proxy_ftp_user", &pelu::key_proxy_ftp_user, L"szFtpProxyUser"},
    {"key_proxy_ftp_password", &pelu::key_proxy_ftp_password, L"szFtpProxyPassword"},
    {"key_proxy_num_exceptions", &pelu::key_proxy_num_exceptions, L"uiNumExceptions"},
    {"key_proxy_exception", &pelu::key_proxy_exception, L"Exception"},
    {"key_proxy_bypass_local", &pelu::key_proxy_bypass_local, L"bBypassLocalAddress"},
    {"key_vc_version", &pelu::key_vc_version, L"Version"},
    {"key_inetmgr_total_sites", &pelu::key_inetmgr_total_sites, L"SitelistOrderNum"},
    {"key_inetmgr_disabled_sites", &pelu::key_inetmgr_disabled_sites, L"DisabledSiteNum"},
    {"key_inetmgr_sl_order", &pelu::key_inetmgr_sl_order, L"SitelistOrder"},
    {"key_inetmgr_sl_disabled_site", &pelu::key_inetmgr_sl_disabled_site, L"DisabledSites"},
    {"key_advanced_FindNearestMethod", &pelu::key_advanced_FindNearestMethod,
     L"uiFindNearestMethod"},
    {"key_advanced_overwrite_client_sites", &pelu::key_advanced_overwrite_client_sites,
     L"OverwriteClientSites"},
    {"props_section_general", &pelu::props_section_general, L"General"},
    {"props_key_installed_path", &pelu::props_key_installed_path, L"szInstallDir"},
    {"props_key_product_version", &pelu::props_key_product_version, L"szProductVer"},
    {"props_key_hotfix_version", &pelu::props_key_hotfix_version, L"Hotfix"},
    {"props_key_show_ui", &pelu::props_key_show_ui, L"ShowAgentUI"},
    {"props_key_show_reboot_ui", &pelu::props_key_show_reboot_ui, L"ShowRebootUI"},
    {"props_key_reboot_timeout", &pelu::props_key_reboot_timeout, L"RebootTimeOut"},
    {"props_key_plugin_version", &pelu::props_key_plugin_version, L"PluginVersion"},
    {"props_key_language", &pelu::props_key_language, L"Language"},
    {"props_key_agent_guid", &pelu::props_key_agent_guid, L"AgentGUID"},
    {"props_key_asci", &pelu::props_key_asci, L"CheckNetworkMessageInterval"},
    {"props_key_refresh_interval", &pelu::props_key_refresh_interval, L"PropsRefreshInterval"},
};

const NamedText<std::string> kNarrowNames[] = {
    {"TaskNameKey", &pelu::TaskNameKey, "DisplayName"},
    {"PlatformsKey", &pelu::PlatformsKey, "Platforms"},
    {"TaskGuidKey", &pelu::TaskGuidKey, "TaskID"},
    {"SoftwareIdKey", &pelu::SoftwareIdKey, "SoftwareID"},
    {"PriorityKey", &pelu::PriorityKey, "Priority"},
    {"VersionKey", &pelu::VersionKey, "TaskVersion"},
    {"TaskTypeKey", &pelu::TaskTypeKey, "TaskType"},
    {"CreatorSoftwareKey", &pelu::CreatorSoftwareKey, "CreatorID"},
    {"PendingKey", &pelu::PendingKey, "TaskPending"},
    {"TaskSection", &pelu::TaskSection, "Task"},
    {"TaskGroupSection", &pelu::TaskGroupSection, "TaskGroup"},
    {"GeneralSection", &pelu::GeneralSection, "General"},
    {"TaskRoot", &pelu::TaskRoot, "TaskRoot"},
    {"SettingsSection", &pelu::SettingsSection, "Settings"},
    {"EnabledKey", &pelu::EnabledKey, "Enabled"},
    {"StopAfterMinutesKey", &pelu::StopAfterMinutesKey, "StopAfterMinutes"},
    {"DeleteWhenFinishedKey", &pelu::DeleteWhenFinishedKey, "DeleteWhenFinished"},
    {"Schedule_Section", &pelu::Schedule_Section, "Schedule"},
    {"StartDateTime_Key", &pelu::StartDateTime_Key, "StartDateTime"},
    {"StopDateTime_Key", &pelu::StopDateTime_Key, "StopDateTime"},
    {"StopTimeSpecified_Key", &pelu::StopTimeSpecified_Key, "StopDateValid"},
    {"ScheduleType_Key", &pelu::ScheduleType_Key, "Type"},
    {"IdleMinutes_Key", &pelu::IdleMinutes_Key, "IdleMinutes"},
    {"RunIfMissed_Key", &pelu::RunIfMissed_Key, "RunIfMissed"},
    {"RunIfMissedDelay_Key", &pelu::RunIfMissedDelay_Key, "RunIfMissedDelayMins"},
    {"AtStartupDelayMinutes_Key", &pelu::AtStartupDelayMinutes_Key, "AtStartupDelayMinutes"},
    {"RandomizationEnabled_Key", &pelu::RandomizationEnabled_Key, "RandomizationEnabled"},
    {"RandomizationInterval_Key", &pelu::RandomizationInterval_Key, "RandomizationWndMins"},
    {"TaskRepeatable_Key", &pelu::TaskRepeatable_Key, "TaskRepeatable"},
    {"RepeatOption_Key", &pelu::RepeatOption_Key, "RepeatOption"},
    {"RepeatInterval_Key", &pelu::RepeatInterval_Key, "RepeatInterval"},
    {"UntilOption_Key", &pelu::UntilOption_Key, "UntilOption"},
    {"UntilDuration_Key", &pelu::UntilDuration_Key, "UntilDuration"},
    {"UntilTime_Key", &pelu::UntilTime_Key, "UntilTime"},
    {"GMT_Key", &pelu::GMT_Key, "GMTTime"},
    {"TaskFinished_Key", &pelu::TaskFinished_Key, "TaskFinished"},
    {"RepeatDays_Key", &pelu::RepeatDays_Key, "RepeatDays"},
    {"DaysOfWeek_Key", &pelu::DaysOfWeek_Key, "MaskDaysOfWeek"},
    {"RepeatWeeks_Key", &pelu::RepeatWeeks_Key, "RepeatWeeks"},
    {"MonthOption_Key", &pelu::MonthOption_Key, "MonthOption"},
    {"DayNumOfMonth_Key", &pelu::DayNumOfMonth_Key, "DayNumOfMonth"},
    {"WeekNumOfMonth_Key", &pelu::WeekNumOfMonth_Key, "WeekNumOfMonth"},
    {"DayOfWeek_Key", &pelu::DayOfWeek_Key, "DayOfWeek"},
    {"MaskMonthsOfYear_Key", &pelu::MaskMonthsOfYear_Key, "MaskMonthsOfYear"},
    {"DependenciesSection", &pelu::DependenciesSection, "Task Dependencies"},
    {"Dependency_I_Key", &pelu::Dependency_I_Key, "Dependency"},
    {"NumDependencies_Key", &pelu::NumDependencies_Key, "NumberOfDependencies"},
    {"EnableRunTaskOnceADay_Key", &pelu::EnableRunTaskOnceADay_Key, "EnableRunTaskOnceADay"},
};

TEST(DataConstants, EveryWideNameHasItsText) {
  ExpectTexts(kWideNames);
}

TEST(DataConstants, EveryNarrowNameHasItsText) {
  ExpectTexts(kNarrowNames);
}

// This program's own initialisation comes after that of the libraries.
const bool kLibrariesAreInitialised = (zebcomn_test::EndAllocationRecord(), true);

/// Checks that each of the texts was allocated after the one before, and the first after `before`;
/// when the last was. Short texts, which lie in their objects, are passed over.
template <typename Text, std::size_t Count>
std::size_t ExpectInOrder(const NamedText<Text> (&rows)[Count], std::size_t before) {
  for (const NamedText<Text>& row : rows) {
    if (row.expected.size() <= Text().capacity()) continue;
    const std::size_t time = zebcomn_test::TimeOfAllocation(row.constant->data());
    EXPECT_GT(time, before) << row.name;
    before = time;
  }
  return before;
}

TEST(DataConstants, AreConstructedInTheOrderOfTheirTables) {
#ifdef ZEBCOMN_UNDER_VALGRIND
  GTEST_SKIP() << "valgrind brings its own memory functions, which keep no record";
#endif
  ASSERT_TRUE(kLibrariesAreInitialised);
  const std::size_t last_wide = ExpectInOrder(kWideNames, 0);
  ASSERT_GT(last_wide, 0U);
  EXPECT_GT(ExpectInOrder(kNarrowNames, last_wide), last_wide);
}

TEST(DataConstants, RepeatedTextsAreSeparateObjects) {
  EXPECT_NE(&pelu::section_general, &pelu::props_section_general);
  EXPECT_EQ(pelu::section_general, pelu::props_section_general);
  EXPECT_NE(&pelu::key_network_asci_interval, &pelu::props_key_asci);
  EXPECT_EQ(pelu::key_network_asci_interval, pelu::props_key_asci);
}

}  // namespace
