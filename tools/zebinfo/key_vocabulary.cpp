#include "tools/zebinfo/key_vocabulary.h"

#include "tools/zebinfo/text.h"
#include "zebcomn/util/data_constants.h"

namespace zebinfo {
namespace {

using namespace quenty_com::pelu;

Key MakeKey(const std::wstring& text, const char* constant) {
  return {ToUtf8(text), constant};
}
Key MakeKey(const std::string& text, const char* constant) {
  return {text, constant};
}

#define KEY(constant) MakeKey(constant, #constant)

// What the agent itself does.
std::vector<Section> AgentPolicy() {
  return {{"policy",
           KEY(section_general),
           {KEY(key_EnforcePolicy), KEY(key_general_bCollectFullProps),
            KEY(key_general_PolicyEnforcementInterval), KEY(key_general_force_install)}},
          {"policy",
           KEY(section_network),
           {KEY(key_network_bAgentASCI), KEY(key_network_asci_interval),
            KEY(key_network_asci_do_when)}},
          {"policy",
           KEY(section_listenserver),
           {KEY(key_ls_bEnableAgentPing), KEY(key_ls_AgentPingPort),
            KEY(key_ls_bListenToKZUServerOnly)}},
          {"policy",
           KEY(section_events),
           {KEY(key_events_EnableEventTrigger), KEY(key_events_EventTriggerThreshold),
            KEY(key_events_EventTriggerDelayMins), KEY(key_events_MaxEventsPerTrigger)}},
          {"policy",
           KEY(section_logging),
           {KEY(key_log_bEnableLog), KEY(key_log_bLimitLogSize), KEY(key_log_nLogSizeLimit),
            KEY(key_log_bVerbose), KEY(key_log_bEnableRemoteLog)}}};
}

// Where the agent finds its servers.
std::vector<Section> ServerPolicy() {
  return {
      {"policy",
       KEY(section_sitelist),
       {KEY(key_sl_NumberOfSites), KEY(key_sl_protocol), KEY(key_sl_enabled), KEY(key_sl_site_id),
        KEY(key_sl_site_name), KEY(key_sl_sites_server), KEY(key_sl_server_name),
        KEY(key_sl_server_ip), KEY(key_sl_share_name), KEY(key_sl_relative_path),
        KEY(key_sl_site_port), KEY(key_sl_type), KEY(key_sl_use_auth), KEY(key_sl_user_name),
        KEY(key_sl_password), KEY(key_sl_password_encrypted), KEY(key_sl_domain), KEY(key_sl_order),
        KEY(key_sl_local)}},
      {"policy",
       KEY(section_proxy),
       {KEY(key_proxy_type), KEY(key_proxy_http_server), KEY(key_proxy_http_port),
        KEY(key_proxy_http_use_auth), KEY(key_proxy_http_user), KEY(key_proxy_http_password),
        KEY(key_proxy_ftp_server), KEY(key_proxy_ftp_port), KEY(key_proxy_ftp_use_auth),
        KEY(key_proxy_ftp_user), KEY(key_proxy_ftp_password), KEY(key_proxy_num_exceptions),
        KEY(key_proxy_exception), KEY(key_proxy_bypass_local)}},
      {"policy", KEY(section_version_control), {KEY(key_vc_version)}},
      {"policy",
       KEY(section_inetmanager),
       {KEY(key_inetmgr_total_sites), KEY(key_inetmgr_disabled_sites), KEY(key_inetmgr_sl_order),
        KEY(key_inetmgr_sl_disabled_site)}},
      {"policy",
       KEY(section_advanced),
       {KEY(key_advanced_FindNearestMethod), KEY(key_advanced_overwrite_client_sites)}}};
}

std::vector<Section> Properties() {
  return {{"properties",
           KEY(props_section_general),
           {KEY(props_key_installed_path), KEY(props_key_product_version),
            KEY(props_key_hotfix_version), KEY(props_key_show_ui), KEY(props_key_show_reboot_ui),
            KEY(props_key_reboot_timeout), KEY(props_key_plugin_version), KEY(props_key_language),
            KEY(props_key_agent_guid), KEY(props_key_asci), KEY(props_key_refresh_interval)}}};
}

// The task scheduler's names, its sections among them, stand together under a title of our own.
std::vector<Section> Tasks() {
  return {{"tasks",
           {"Tasks", ""},
           {KEY(TaskNameKey),
            KEY(PlatformsKey),
            KEY(TaskGuidKey),
            KEY(SoftwareIdKey),
            KEY(PriorityKey),
            KEY(VersionKey),
            KEY(TaskTypeKey),
            KEY(CreatorSoftwareKey),
            KEY(PendingKey),
            KEY(TaskSection),
            KEY(TaskGroupSection),
            KEY(GeneralSection),
            KEY(TaskRoot),
            KEY(SettingsSection),
            KEY(EnabledKey),
            KEY(StopAfterMinutesKey),
            KEY(DeleteWhenFinishedKey),
            KEY(Schedule_Section),
            KEY(StartDateTime_Key),
            KEY(StopDateTime_Key),
            KEY(StopTimeSpecified_Key),
            KEY(ScheduleType_Key),
            KEY(IdleMinutes_Key),
            KEY(RunIfMissed_Key),
            KEY(RunIfMissedDelay_Key),
            KEY(AtStartupDelayMinutes_Key),
            KEY(RandomizationEnabled_Key),
            KEY(RandomizationInterval_Key),
            KEY(TaskRepeatable_Key),
            KEY(RepeatOption_Key),
            KEY(RepeatInterval_Key),
            KEY(UntilOption_Key),
            KEY(UntilDuration_Key),
            KEY(UntilTime_Key),
            KEY(GMT_Key),
            KEY(TaskFinished_Key),
            KEY(RepeatDays_Key),
            KEY(DaysOfWeek_Key),
            KEY(RepeatWeeks_Key),
            KEY(MonthOption_Key),
            KEY(DayNumOfMonth_Key),
            KEY(WeekNumOfMonth_Key),
            KEY(DayOfWeek_Key),
            KEY(MaskMonthsOfYear_Key),
            KEY(DependenciesSection),
            KEY(Dependency_I_Key),
            KEY(NumDependencies_Key),
            KEY(EnableRunTaskOnceADay_Key)}}};
}

#undef KEY

}  // namespace

std::vector<Section> ConfigurationSections() {
  std::vector<Section> sections = AgentPolicy();
  for (const auto& part : {ServerPolicy(), Properties(), Tasks()}) {
    sections.insert(sections.end(), part.begin(), part.end());
  }
  return sections;
}

}  // namespace zebinfo
