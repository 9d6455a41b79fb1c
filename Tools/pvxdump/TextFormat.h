#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include <glm/vec3.hpp>

// How values of a file look to people.
namespace TextFormat {

// Digits in groups of three: "1,234,567".
std::string Count(uint64_t count);
// With its noun: "1 vertex", "2 vertices".
std::string Count(uint64_t count, const char* pOne, const char* pMany);
// Up to that many decimals, without zeros at the end.
std::string Number(double value, int decimals = 4);
std::string Numbers(std::span<const float> values, int decimals = 4);
std::string Vector(const glm::vec3& v);
// A name of the file, which may hold anything: what no terminal should see becomes \xNN.
std::string Name(std::string_view name);
// A four-character code, or its number when it isn't one.
std::string Code(uint32_t code);

} // namespace TextFormat
