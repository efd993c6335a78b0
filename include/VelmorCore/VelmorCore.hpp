/// @file
/// Everything that VelmorCore offers to callers in C++.
#pragma once

#include <VelmorCore/Buffer.h>
#include <VelmorCore/Bundle.h>
#include <VelmorCore/Clock.h>
#include <VelmorCore/ConfigFile.h>
#include <VelmorCore/Configure.h>
#include <VelmorCore/Core.h>
#include <VelmorCore/File.h>
#include <VelmorCore/FileUploader.h>
#include <VelmorCore/Http.h>
#include <VelmorCore/HttpTransport.h>
#include <VelmorCore/Log.h>
#include <VelmorCore/Network.h>
#include <VelmorCore/Object.h>
#include <VelmorCore/Operation.h>
#include <VelmorCore/RemoteConfig.h>
#include <VelmorCore/System.h>
#include <VelmorCore/Timer.h>
#include <VelmorCore/UploadTask.h>
#include <VelmorCore/Value.h>
#include <VelmorCore/Zip.h>
#include <VelmorCore/velmorcore.h>
