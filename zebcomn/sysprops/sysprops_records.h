#ifndef ZEBCOMN_SYSPROPS_SYSPROPS_RECORDS_H_
#define ZEBCOMN_SYSPROPS_SYSPROPS_RECORDS_H_

/// \file
/// The six records in which the property collectors leave their results.
///
/// All are plain values: copying copies every field, and nothing is locked, so a record belongs to
/// one thread at a time. The order of the fields is part of the binary interface. "N/A" below means
/// a copy of `DefaultProp_Val`. A collector never resets a record: a field that it does not write
/// keeps what it held.
///
/// \par Example
/// \include system_properties.cpp

#include <map>
#include <string>
#include <utility>

#include "zebcomn/export.h"

namespace quenty_com::pelu::sysprops {

/// What is collected of the processors.
struct CPUInformation {
  /// `m_wstrIsPortable` empty, every other field "N/A".
  ZEBCOMN_EXPORT CPUInformation();
  /// Frees the texts.
  ZEBCOMN_EXPORT ~CPUInformation();

  std::wstring m_wstrCPUType;          ///< Model text, as the kernel writes it.
  std::wstring m_wstrCPUSpeed;         ///< Clock text, as the kernel writes it.
  std::wstring m_wstrNumOfCPU;         ///< Number of processors, decimal.
  std::wstring m_wstrCPUSerialNumber;  ///< Never written on Linux.
  std::wstring m_wstrIsPortable;       ///< "-1" once collected: not known.
};

/// What is collected of the host's names and its local address.
struct NetworkInformation {
  /// Every field "N/A".
  ZEBCOMN_EXPORT NetworkInformation();
  /// Frees the texts.
  ZEBCOMN_EXPORT ~NetworkInformation();

  std::wstring m_wstrDomainName;     ///< DNS domain name.
  std::wstring m_wstrComputerName;   ///< Short host name.
  std::wstring m_wstrIPAddress;      ///< The chosen local address.
  std::wstring m_wstrSubnetAddress;  ///< Network address of its subnet.
  std::wstring m_wstrSubnetMask;     ///< Its subnet mask.
  std::wstring m_wstrNETAddress;     ///< Hardware (MAC) address of the interface that has it.
  std::wstring m_wstrIPXAddress;     ///< Always "N/A" on Linux.
  std::wstring m_wstrIPHostName;     ///< Fully qualified host name.
};

/// What is collected of the memory.
struct MemoryInformation {
  /// Every field "N/A".
  ZEBCOMN_EXPORT MemoryInformation();
  /// Frees the texts.
  ZEBCOMN_EXPORT ~MemoryInformation();

  std::wstring m_wstrTotalPhysicalMemory;  ///< Bytes, decimal.
  std::wstring m_wstrFreeMemory;           ///< Bytes, decimal.
};

/// What is collected of the operating system.
struct OSInformation {
  /// `m_wstrPlatformID` empty, every other field "N/A".
  ZEBCOMN_EXPORT OSInformation();
  /// Frees the texts.
  ZEBCOMN_EXPORT ~OSInformation();

  std::wstring m_wstrOSType;        ///< OS family name.
  std::wstring m_wstrOSPlatform;    ///< Platform word or platform text.
  std::wstring m_wstrOSVersion;     ///< OS version text.
  std::wstring m_wstrOSCsdVersion;  ///< Service-pack text.
  std::wstring m_wstrOSBuildNum;    ///< Never written on this platform.
  std::wstring m_wstrOSOEMId;       ///< Distribution.
  std::wstring m_wstrPlatformID;    ///< Platform code.
  std::wstring m_wstrOSBitMode;     ///< Bit mode.
};

/// Mount point to its total and its free space, both in MB (2^20 bytes) with two decimals.
using FileSystemMap = std::map<std::wstring, std::pair<std::wstring, std::wstring>>;

/// What is collected of the local file systems.
struct DiskInformation {
  /// `m_mapFileSystems` empty, every other field "N/A".
  ZEBCOMN_EXPORT DiskInformation();
  /// Frees the texts.
  ZEBCOMN_EXPORT ~DiskInformation();

  std::wstring m_wstrTotalDiskSpace;       ///< MB with two decimals, without "/dev/shm".
  std::wstring m_wstrFreeDiskSpace;        ///< MB with two decimals, without "/dev/shm".
  std::wstring m_wstrNumberOfFileSystems;  ///< Number of file systems listed, decimal.
  FileSystemMap m_mapFileSystems;          ///< Every file system listed, also "/dev/shm".
};

/// What is collected of the user, time zone and language.
struct MiscInformation {
  /// Every field "N/A".
  ZEBCOMN_EXPORT MiscInformation();
  /// Frees the texts.
  ZEBCOMN_EXPORT ~MiscInformation();

  std::wstring m_wstrUserName;       ///< User that the process runs as.
  std::wstring m_wstrTimeZone;       ///< Time-zone name.
  std::wstring m_wstrDefaultLangID;  ///< Language id, four hexadecimal digits.
  std::wstring m_wstrLastUpdate;     ///< Local time of the collection, "MM/DD/YYYY hh:mm:ss".
};

}  // namespace quenty_com::pelu::sysprops

#endif  // ZEBCOMN_SYSPROPS_SYSPROPS_RECORDS_H_
