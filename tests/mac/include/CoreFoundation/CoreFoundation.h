/// The few declarations of CoreFoundation that the library uses, with the types that macOS gives them, so that its
/// files for macOS are compiled on every machine.
#pragma once

#include <cstdint>

using Boolean = unsigned char;
using UInt8 = unsigned char;
using CFIndex = long;
using CFTypeRef = void const*;
using CFStringEncoding = std::uint32_t;
using CFNumberType = CFIndex;
using CFAllocatorRef = struct __CFAllocator const*;
using CFArrayRef = struct __CFArray const*;
using CFBundleRef = struct __CFBundle*;
using CFErrorRef = struct __CFError*;
using CFNumberRef = struct __CFNumber const*;
using CFReadStreamRef = struct __CFReadStream*;
using CFStringRef = struct __CFString const*;
using CFURLRef = struct __CFURL const*;

extern "C" {

extern CFAllocatorRef const kCFAllocatorDefault;
extern CFStringRef const kCFURLFileSizeKey;

enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };
enum : CFNumberType { kCFNumberCFIndexType = 14 };
enum { kCFBundleExecutableArchitectureX86_64 = 0x01000007 };

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);

CFIndex CFArrayGetCount(CFArrayRef array);
void const* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, UInt8 const* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternal);

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, UInt8 const* path, CFIndex length,
                                                 Boolean isDirectory);
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer, CFIndex size);
Boolean CFURLCopyResourcePropertyForKey(CFURLRef url, CFStringRef key, void* value, CFErrorRef* error);

CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef url);
CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier);
CFArrayRef CFBundleCopyExecutableArchitectures(CFBundleRef bundle);
Boolean CFBundleIsExecutableLoaded(CFBundleRef bundle);
Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle, CFErrorRef* error);
void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef name);
CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type, CFStringRef subDirectory);

CFReadStreamRef CFReadStreamCreateWithFile(CFAllocatorRef allocator, CFURLRef url);
Boolean CFReadStreamOpen(CFReadStreamRef stream);
CFIndex CFReadStreamRead(CFReadStreamRef stream, UInt8* buffer, CFIndex length);
void CFReadStreamClose(CFReadStreamRef stream);

}  // extern "C"
