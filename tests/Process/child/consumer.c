/* A caller in C11: every function of the header can be named, and the main ones be used. */
#include <VelmorCore/velmorcore.h>
#include <stdio.h>
#include <string.h>

static int lines;

static void on_line(VelmorCoreLogPriority level, char const* line) {
    lines += level >= 0 && strstr(line, "from C") != NULL;
}

static void on_network(VelmorCoreNetworkState state) {
    (void)state;
}

int main(void) {
    VelmorCore_SetUbrixLogCallback(on_line);
    VelmorCore_SetUbrixLogLevel(0);
    VelmorSDKLog_setLogLevel("VelmorCore", 0);
    VelmorSDKLog_setAllLogLevel(0);
    velmorcore_setLogLevel(1);
    VelmorCore_XLog(4, __FILE__, __LINE__, __func__, "from C, 100%");
    int failures = lines != 1;
    failures += velmorcore_init() != 0 || velmorcore_getInstance() == NULL;
    failures += !velmorcore_configure_clear() || !velmorcore_configure_seturl(NULL);
    failures += ubrix_remoteconfig_GetInt("k", 3) != 3 || ubrix_remoteconfig_GetLong("k", -1) != -1;
    failures += ubrix_remoteconfig_GetDouble("k", 0.5) != 0.5 || !ubrix_remoteconfig_GetBool("k", true);
    char text[8] = "";
    failures += !ubrix_remoteconfig_GetString("k", text, sizeof text, "word") || strcmp(text, "word") != 0;
    ubrix_target_unity_enable_ui_update();
    ubrix_target_unity_update();
    char block[32];
    /* Two numbers and four empty texts: 24 bytes. */
    failures +=
        ubrix_network_GetDetailNetworkInfo(block, 24) || !ubrix_network_GetDetailNetworkInfo(block, 25);
    ubrix_network_SetNetworkChangedCallback(on_network);
    char id[64];
    memset(id, '?', sizeof id);
    failures += Ubrix_system_GetUUID(id, 36) || id[0] != '?' || !Ubrix_system_GetUUID(id, sizeof id);
    failures += strlen(id) != 36 || id[sizeof id - 1] != 0;
    failures +=
        Ubrix_system_GetIDFA() || Ubrix_system_IsDeviceRooted() || Ubrix_system_CheckPermission(0) != -1;
    failures += ubrix_network_GetNetworkState() != 1;
    VelmorCoreConfigFile* file = VelmorCore_NewConfigFile("FromC");
    failures += file == NULL || VelmorCore_GetDefaultHandler() == NULL;
    VelmorCore_DeleteConfigFile(&file);
    failures += file != NULL;
    setSarnetSendMessageCallback(NULL), setSarnetSendStructCallback(NULL);
    setSarnetSendResultCallback(NULL), setSarnetSendResultStructCallback(NULL);
    setSarnetSendBufferCallback(NULL), setSarnetSendResultBufferCallback(NULL);
    setSarnetSendResultStructBufferCallback(NULL), setSarnetSendVoidMethodCallback(NULL);
    setSarnetSendVoidMethodParamCallback(NULL), setSarnetSendVoidMethodBufferCallback(NULL);
    failures += addPlatformObject(1, "Unknown") || addPlatformObject(1, NULL);
    removePlatformObject(1);
    velmorcore_releaseInstance();
    printf("%d failures\n", failures);
    return failures;
}
