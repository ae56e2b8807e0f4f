#pragma once

// Scan archives that a careless or hostile hand could leave as "last-scan.dvscan": trees deeper
// or larger than any disk holds, and payloads far larger than their files. The large ones are
// made in a moment from a few compressed blocks repeated, as an attacker would make them.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace dorvik::test {

// The payload of a scan whose root has a chain of `levels` folders below it.
std::vector<uint8_t> chainPayload(size_t levels);

// The payload of a scan whose root has `count` folders directly below it.
std::vector<uint8_t> widePayload(size_t count);

// A compressed archive of a root with `count` identical folders below it (20 million take about
// 1.4 GB of payload and under 1 MB of file).
std::vector<uint8_t> wideArchive(size_t count);

// A compressed stream of `bytes` zero bytes.
std::vector<uint8_t> zerosArchive(size_t bytes);

// The compressed form of `payload`, as the archive's file holds it.
std::vector<uint8_t> compressed(const std::vector<uint8_t>& payload);

void writeBytes(const std::string& path, const std::vector<uint8_t>& bytes);

} // namespace dorvik::test
