#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

// Sound inputs with a few changes each, the same ones at every run.
class Mutator {
public:
    using Input = std::vector<uint8_t>;

    explicit Mutator(std::vector<Input> seeds) : m_Seeds(std::move(seeds)) {}

    Input Next() {
        Input input = m_Seeds[Pick(m_Seeds.size())];
        for (size_t i = 1 + Pick(4); i > 0; --i)
            Mutate(input);
        return input;
    }

private:
    size_t Pick(size_t count) { return static_cast<size_t>(m_Random()) % count; }

    // Where it hurts: most changes lie in the first bytes.
    size_t PickPlace(const Input& input) { return Pick(Pick(2) ? input.size() : std::min<size_t>(input.size(), 64)); }

    void Mutate(Input& input) {
        static constexpr uint32_t edges[] = {0,      1,      0x7F,       0x80,       0xFF,      0xFFF,
                                             0x1000, 0x1001, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
        if (input.size() < 8) {
            input.resize(input.size() + 8);
            return;
        }
        const size_t place = PickPlace(input);
        switch (Pick(7)) {
        case 0:
            input[place] ^= static_cast<uint8_t>(1u << Pick(8));
            break;
        case 1:
            input[place] = static_cast<uint8_t>(m_Random());
            break;
        case 2:
            PutNumber(input, place, edges[Pick(std::size(edges))], size_t{1} << Pick(3));
            break;
        case 3:
            PutNumber(input, place, static_cast<uint32_t>(m_Random()), size_t{1} << Pick(3));
            break;
        case 4:
            input.resize(place);
            break;
        case 5:
            input.insert(input.begin() + static_cast<std::ptrdiff_t>(place), Pick(40), 0xFF);
            break;
        default:
            CopyWithin(input, place);
            break;
        }
    }
    static void PutNumber(Input& input, size_t place, uint32_t number, size_t size) {
        for (size_t i = 0; i < size && place + i < input.size(); ++i)
            input[place + i] = static_cast<uint8_t>(number >> i * 8);
    }
    void CopyWithin(Input& input, size_t place) {
        const size_t size = std::min(Pick(16), input.size() - place);
        const Input piece(input.begin() + static_cast<std::ptrdiff_t>(place),
                          input.begin() + static_cast<std::ptrdiff_t>(place + size));
        const auto target = static_cast<std::ptrdiff_t>(Pick(input.size() - size + 1));
        std::ranges::copy(piece, input.begin() + target);
    }

    std::vector<Input> m_Seeds;
    std::mt19937 m_Random{1};
};

// How many mutations a test feeds its reader with; PVX_FUZZ_RUNS asks for another number.
inline int GetFuzzRuns() {
    constexpr int defaultRuns = 10000;
    const char* pRuns = std::getenv("PVX_FUZZ_RUNS");
    return pRuns ? std::atoi(pRuns) : defaultRuns;
}
