// The six records: what a fresh one holds, the order of its fields, that it is a plain value.
#include "zebcomn/sysprops/sysprops_records.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace sysprops = quenty_com::pelu::sysprops;

namespace {

using Texts = std::vector<const std::wstring*>;

Texts FieldsInOrder(const sysprops::CPUInformation& r) {
  return {&r.m_wstrCPUType, &r.m_wstrCPUSpeed, &r.m_wstrNumOfCPU, &r.m_wstrCPUSerialNumber,
          &r.m_wstrIsPortable};
}

Texts FieldsInOrder(const sysprops::NetworkInformation& r) {
  return {&r.m_wstrDomainName, &r.m_wstrComputerName, &r.m_wstrIPAddress,  &r.m_wstrSubnetAddress,
          &r.m_wstrSubnetMask, &r.m_wstrNETAddress,   &r.m_wstrIPXAddress, &r.m_wstrIPHostName};
}

Texts FieldsInOrder(const sysprops::MemoryInformation& r) {
  return {&r.m_wstrTotalPhysicalMemory, &r.m_wstrFreeMemory};
}

Texts FieldsInOrder(const sysprops::OSInformation& r) {
  return {&r.m_wstrOSType,     &r.m_wstrOSPlatform, &r.m_wstrOSVersion,  &r.m_wstrOSCsdVersion,
          &r.m_wstrOSBuildNum, &r.m_wstrOSOEMId,    &r.m_wstrPlatformID, &r.m_wstrOSBitMode};
}

Texts FieldsInOrder(const sysprops::DiskInformation& r) {
  return {&r.m_wstrTotalDiskSpace, &r.m_wstrFreeDiskSpace, &r.m_wstrNumberOfFileSystems};
}

Texts FieldsInOrder(const sysprops::MiscInformation& r) {
  return {&r.m_wstrUserName, &r.m_wstrTimeZone, &r.m_wstrDefaultLangID, &r.m_wstrLastUpdate};
}

template <typename Record>
class InformationRecord : public ::testing::Test {};

using Records = ::testing::Types<sysprops::CPUInformation, sysprops::NetworkInformation,
                                 sysprops::MemoryInformation, sysprops::OSInformation,
                                 sysprops::DiskInformation, sysprops::MiscInformation>;
TYPED_TEST_SUITE(InformationRecord, Records, );

TYPED_TEST(InformationRecord, FieldsFollowEachOtherInTheirOrderFromTheStart) {
  const TypeParam record;
  const auto* place = reinterpret_cast<const std::wstring*>(&record);
  for (const std::wstring* field : FieldsInOrder(record)) EXPECT_EQ(field, place++);
}

TYPED_TEST(InformationRecord, IsAPlainValue) {
  static_assert(!std::is_polymorphic_v<TypeParam>);
  static_assert(std::is_copy_constructible_v<TypeParam> && std::is_copy_assignable_v<TypeParam>);
  TypeParam first;
  *const_cast<std::wstring*>(FieldsInOrder(first)[0]) = L"changed";
  const TypeParam copy = first;
  EXPECT_EQ(*FieldsInOrder(copy)[0], L"changed");
  TypeParam assigned;
  assigned = first;
  EXPECT_EQ(*FieldsInOrder(assigned)[0], L"changed");
}

TYPED_TEST(InformationRecord, FreshFieldsAreNotAvailableButForTwo) {
  const TypeParam record;
  for (const std::wstring* field : FieldsInOrder(record)) {
    bool starts_empty = false;
    if constexpr (std::is_same_v<TypeParam, sysprops::CPUInformation>) {
      starts_empty = field == &record.m_wstrIsPortable;
    } else if constexpr (std::is_same_v<TypeParam, sysprops::OSInformation>) {
      starts_empty = field == &record.m_wstrPlatformID;
    }
    EXPECT_EQ(*field, starts_empty ? L"" : L"N/A");
  }
}

TEST(DiskInformation, MapComesLastAndStartsEmpty) {
  const sysprops::DiskInformation record;
  EXPECT_EQ(static_cast<const void*>(&record.m_mapFileSystems),
            static_cast<const void*>(&record.m_wstrNumberOfFileSystems + 1));
  EXPECT_TRUE(record.m_mapFileSystems.empty());
}

}  // namespace
