#ifndef ZEBCOMN_NETWORK_IPV6_TEXT_H_
#define ZEBCOMN_NETWORK_IPV6_TEXT_H_

/// \file
/// IPv6 addresses as text: the canonical form that the library stores and compares (eight groups
/// written out, without "::", scope and brackets), the literal host-name form that lets an address
/// stand where only a host name is accepted, and subnet arithmetic on canonical texts.
///
/// Every function is pure, takes any text whatever, reads nothing outside it and reports no error:
/// malformed input gives a malformed text, and a lack of memory the empty text. Any thread may call
/// them. Equal input gives equal results on every word size.
///
/// \par Example
/// \include network.cpp

#include <cstdint>
#include <string>

#include "zebcomn/export.h"

/// Counts the characters of `text` that equal `c`, in a 16-bit counter.
/// \param text the text.
/// \param c the character.
/// \param cap what to return for 8 or more; 7, the colons of a full IPv6 text, is usual.
/// \return the count when it is less than 8, else `cap`.
ZEBCOMN_EXPORT uint16_t noOfOccurences(const std::string& text, char c, int cap);

/// Removes the scope ("%" and what follows) and writes the zero groups of the first "::" out, each
/// as "0": "fe80::1%eth0" gives "fe80:0:0:0:0:0:0:1". Text without "::" only loses its scope. A
/// dotted IPv4 tail counts as one group: "::ffff:10.1.2.3" gives "0:0:0:0:0:0:ffff:10.1.2.3". Text
/// with more than seven colons gets no groups added.
/// \param address an IPv6 address, with or without "::" and scope.
/// \return the canonical text.
ZEBCOMN_EXPORT std::string expandIPV6Address(std::string address);

/// The bitwise AND of two canonical texts, group by group, with as many groups as the shorter one;
/// "" when either is empty. Groups are read as 32-bit hexadecimal numbers.
/// \param address a canonical text.
/// \param mask a canonical text.
/// \return the subnet's canonical text.
ZEBCOMN_EXPORT std::string calculateSubNetAddrForV6(const std::string& address,
                                                    const std::string& mask);

/// The literal host name of an address: "[fe80::1%eth0]" gives "fe80--1.ipv6-literal.net". The
/// scope is dropped. Text without ":" and text that holds ".ipv6-literal.net" stay as they are.
/// \param address an IPv6 address, with or without scope and brackets.
/// \return the host name.
ZEBCOMN_EXPORT std::string convertV6AddrToLiteralFormat(std::string address);

/// The address of a literal host name: "fe80--1s4.ipv6-literal.net" gives "fe80::1". The scope
/// ("s" and what follows) is dropped. Brackets come off any text; one that then does not hold
/// ".ipv6-literal.net" is returned.
/// \param literal a literal host name.
/// \return the address.
ZEBCOMN_EXPORT std::string convertLiteralFormatToV6Addr(std::string literal);

/// The position of the `n`-th occurrence of `pattern`, counted from 1. Occurrences may overlap.
/// \param text the text to search.
/// \param pattern what to search for.
/// \param n which occurrence, from 1.
/// \return std::string::npos when there are fewer than `n`, and when `n` is 0.
ZEBCOMN_EXPORT std::string::size_type findNthOccuranceOf(const std::string& text,
                                                         const std::string& pattern,
                                                         const unsigned int& n);

#endif  // ZEBCOMN_NETWORK_IPV6_TEXT_H_
