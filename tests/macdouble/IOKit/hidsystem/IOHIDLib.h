#pragma once
// What is used of the system's permission to hear keys, as its public documentation declares it.

#include <cstdint>

enum IOHIDRequestType : uint32_t { kIOHIDRequestTypePostEvent, kIOHIDRequestTypeListenEvent };
enum IOHIDAccessType : uint32_t { kIOHIDAccessTypeGranted, kIOHIDAccessTypeDenied, kIOHIDAccessTypeUnknown };

extern "C" IOHIDAccessType IOHIDCheckAccess(IOHIDRequestType requestType);
extern "C" bool IOHIDRequestAccess(IOHIDRequestType requestType);
