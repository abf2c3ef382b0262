#ifndef ZEBCOMN_NETWORK_NETINTERFACE_H_
#define ZEBCOMN_NETWORK_NETINTERFACE_H_

/// \file
/// The host's network configuration as text: one `IPAddress` for each address, one `NetInterface`
/// for each interface, and the `NetInterfaceList` of all of them.
///
/// All three are plain values: copying copies every field, every getter returns a copy, and nothing
/// refers to anything outside the object. Nothing is locked; an object belongs to one thread at a
/// time. No call here logs or touches `nErrno`. Member functions are not const because callers'
/// object files hold the names of the non-const ones. Filling a list and looking up in it report a
/// lack of memory as their failure result; a getter or `setOption` throws std::bad_alloc, as the
/// standard containers do.
///
/// \par Example
/// \include network.cpp

#include <map>
#include <string>
#include <vector>

#include "zebcomn/export.h"

/// Selects the field of an `IPAddress` that `setOption` writes.
enum IP_PARAM : unsigned int {
  IP_ADDRESS = 0,     ///< Address text.
  IP_FAMILY = 1,      ///< Address family.
  IP_SUBNETMASK = 2,  ///< Subnet mask text.
  IP_SUBNETADDR = 3,  ///< Subnet address text.
};

/// Selects the field of a `NetInterface` that `setOption` writes.
enum NETINTERFACE_PARAM : unsigned int {
  NETINTERFACE_MACADDRESS = 0,  ///< Hardware address text.
  NETINTERFACE_INDEXNAME = 1,   ///< Interface name.
  NETINTERFACE_INDEX = 2,       ///< Interface index.
  NETINTERFACE_IPADDRESS = 3,   ///< Appends one address.
};

/// One address of an interface. IPv4 texts are dotted quads, such as "192.168.1.10". IPv6 texts
/// have eight groups without "::" and without a "%" scope, such as "fe80:0:0:0:0:0:0:1".
class IPAddress {
 public:
  /// Three empty texts and family 0.
  ZEBCOMN_EXPORT IPAddress();

  /// Writes the text that `param` selects. A `param` that selects no text (`IP_FAMILY` too) is
  /// ignored.
  /// \param param the field.
  /// \param value its new text.
  ZEBCOMN_EXPORT void setOption(IP_PARAM param, std::string value);
  /// Writes the family when `param` is `IP_FAMILY`; any other `param` is ignored.
  /// \param param the field.
  /// \param value 2 for IPv4, 10 for IPv6.
  ZEBCOMN_EXPORT void setOption(IP_PARAM param, unsigned int value);

  /// The address. \return the text, or "".
  ZEBCOMN_EXPORT std::string getIPAddress();
  /// The subnet mask. \return the text, or "".
  ZEBCOMN_EXPORT std::string getSubNetMask();
  /// The subnet's address. \return the text, or "".
  ZEBCOMN_EXPORT std::string getSubNetAddr();
  /// The address family.
  /// \return 2 for IPv4, 10 for IPv6 (Linux's AF_INET and AF_INET6), 0 when it was never set.
  ZEBCOMN_EXPORT unsigned int getIPFamily();

 private:
  friend struct NetRecordLayout;

  std::string address_;
  std::string subnet_mask_;
  std::string subnet_address_;
  unsigned int family_;
};

/// One interface with its addresses, in the order in which they were appended.
class NetInterface {
 public:
  /// Index 0, two empty texts and no address.
  ZEBCOMN_EXPORT NetInterface();

  /// Writes the hardware address (`NETINTERFACE_MACADDRESS`) or the name
  /// (`NETINTERFACE_INDEXNAME`); any other `param` is ignored.
  /// \param param the field.
  /// \param value its new text.
  ZEBCOMN_EXPORT void setOption(NETINTERFACE_PARAM param, std::string value);
  /// Writes the index when `param` is `NETINTERFACE_INDEX`; any other `param` is ignored.
  /// \param param the field.
  /// \param value the interface's index.
  ZEBCOMN_EXPORT void setOption(NETINTERFACE_PARAM param, unsigned int value);
  /// Appends a copy of `value` when `param` is `NETINTERFACE_IPADDRESS`, also when an equal address
  /// is there already; any other `param` is ignored.
  /// \param param the field.
  /// \param value the address.
  ZEBCOMN_EXPORT void setOption(NETINTERFACE_PARAM param, const IPAddress& value);

  /// The interface's addresses. \return a copy of all of them.
  ZEBCOMN_EXPORT std::vector<IPAddress> getIPAddress();
  /// The hardware address.
  /// \return 12 lower-case hexadecimal digits without separators, or "".
  ZEBCOMN_EXPORT std::string getMACAddress();
  /// The interface's name, such as "eth0".
  /// \return the name, or "".
  ZEBCOMN_EXPORT std::string getIndexName();
  /// The interface's index, as the system counts them. \return the index; 0 when it was never set.
  ZEBCOMN_EXPORT unsigned int getIndex();

 private:
  friend struct NetRecordLayout;

  unsigned int index_;
  std::string mac_address_;
  std::string index_name_;
  std::vector<IPAddress> addresses_;
};

/// The host's interfaces by index. A list is built once for each use: construct it, fill it with
/// `getNetInterfacesList`, read it.
class NetInterfaceList {
 public:
  /// An empty list. `include_loopback` says whether filling it keeps loopback interfaces.
  /// \param include_loopback true keeps them.
  ZEBCOMN_EXPORT explicit NetInterfaceList(bool include_loopback);

  /// Adds every usable address of the host. An address is used when its interface is up, its family
  /// is IPv4 or IPv6, and its text, mask and hardware address can all be read; one that fails is
  /// left out without a word. What the list holds already stays, so that a second call appends
  /// every address a second time.
  /// \return 1 when at least one address was added, else 0.
  ZEBCOMN_EXPORT int initialize();

  /// The entry under `index`, which is created empty when there is none; the index field of a
  /// created entry is 0 until the caller sets it. The reference is good for the list's life.
  /// \param index the interface's index.
  /// \return the entry, which stays the list's.
  ZEBCOMN_EXPORT NetInterface& getNetInterface(const unsigned int& index);
  /// Copies the entry under `index` to `out`.
  /// \param index the interface's index.
  /// \param[out] out a copy of the entry.
  /// \return 1, or 0 when there is no such entry; `out` is untouched then.
  ZEBCOMN_EXPORT int getNetInterface(unsigned int index, NetInterface& out);
  /// Every index of the list, ascending.
  /// \return the indexes.
  ZEBCOMN_EXPORT std::vector<unsigned int> getIndexes();

 private:
  friend struct NetRecordLayout;

  std::map<unsigned int, NetInterface> interfaces_;
  bool include_loopback_;
};

/// Fills `list` from the host (`NetInterfaceList::initialize`); it is not cleared first.
/// \param list gets the addresses.
/// \return true when at least one address was added.
ZEBCOMN_EXPORT bool getNetInterfacesList(NetInterfaceList& list);

/// Finds the interface that has `address`, by ascending index and then in address order. Texts are
/// compared exactly: a shortened IPv6 text, or one in capitals, matches nothing.
/// \param[out] out a copy of the whole interface; untouched when nothing matches.
/// \param address the address text.
/// \param list where to look.
/// \return 1 when it was found, else 0.
ZEBCOMN_EXPORT int getNetInterfaceFromIPAddress(NetInterface& out, const std::string& address,
                                                NetInterfaceList& list);

/// Finds the hardware address of the interface that has `address`, as
/// `getNetInterfaceFromIPAddress` does.
/// \param[out] mac the hardware address text; untouched when nothing matches.
/// \param address the address text.
/// \param list where to look.
/// \return 1 when it was found, else 0.
ZEBCOMN_EXPORT int getMACAddressFromIPAddress(std::string& mac, const std::string& address,
                                              NetInterfaceList& list);

#endif  // ZEBCOMN_NETWORK_NETINTERFACE_H_
