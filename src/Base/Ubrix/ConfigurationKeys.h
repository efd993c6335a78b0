// The sections and keys that the library itself reads and writes: in the remote configuration, and where it
// says so in the default bundle. Module names beside them name sections of the modules' own.
#pragma once

namespace Ubrix::ConfigurationKey {

// Constants: any thread.

// The library's own section.
constexpr char kSection[] = "VelmorCore";
// Where the answers come from. A host's own address stands in the default bundle, where no answer of a server
// can write.
constexpr char kUrl[] = "RemoteConfigUrl";
constexpr char kHostUrl[] = "HostRemoteConfigUrl";
// When they are asked for.
constexpr char kMaxRetryCount[] = "RemoteConfigMaxRetryCount";
constexpr char kNextGap[] = "RemoteConfigNextGap";
constexpr char kRetryJitter[] = "RemoteConfigRetryJitter";
constexpr char kGapJitter[] = "RemoteConfigGapJitter";
// The operation pool.
constexpr char kOperationMode[] = "OperationMode";
constexpr char kOperationStretch[] = "OperationQueueStretch";
constexpr char kOperationMaxThreads[] = "OperationQueueMaxThreadNum";
constexpr char kOperationMinThreads[] = "OperationQueueMinThreadNum";
constexpr char kOperationInterval[] = "OperationIntervalPerLoop";
// The log: the level in any module's section, the records' mode in the library's own.
constexpr char kLogLevel[] = "LogLevel";
constexpr char kLogRecordMode[] = "VelmorProntelLogMode";
// In the default bundle: who plays, and the rule that the last answer followed.
constexpr char kChannelId[] = "channelid";
constexpr char kOpenId[] = "openid";
constexpr char kRuleId[] = "rule_id";

// The section of upload orders.
constexpr char kUploadSection[] = "Upload";
constexpr char kUploadPaths[] = "file_path";
constexpr char kUploadPatterns[] = "file_pattern";
constexpr char kUploadId[] = "upload_id";
constexpr char kUploadPartSize[] = "part_size";
constexpr char kUploadByHand[] = "manual_upload";

}  // namespace Ubrix::ConfigurationKey
