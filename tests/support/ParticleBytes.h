/// A .dpt file written out field by field, and the group that it describes.
///
///     ParticleBytes bytes;
///     bytes.columns = 7;
///     folder.Write("a.dpt", bytes.Bytes());
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "data/ParticleGroup.h"
#include "support/FreshSystem.h"
#include "support/LittleEndian.h"
#include "support/NumberText.h"

using ParticleRow = std::vector<float>;

/// Two particles and a different value in every field.
struct ParticleBytes {
    int version = 2;
    int skip = 0;
    std::string skipped;
    int geometry = 3;
    int particles = 2;
    int columns = 8;
    float header1 = 1.5f, header2 = 2.5f;
    std::vector<float> t = {1, 2, 3, 4, 5};
    ParticleRow maxima = {9, 10, 11, 12, 13, 14, 15, 16};
    ParticleRow minima = {-9, -10, -11, -12, -13, -14, -15, -16};
    std::string units = "mm", note = "gas", stamp = "then";
    std::vector<ParticleRow> rows = {{1, 2, 3, 4, 5, 6, 7, 8}, {-1, -2, -3, -4, -5, -6, -7, -8}};

    std::string Bytes() const
    {
        std::string bytes = IntBytes(version) + IntBytes(skip) + skipped + IntBytes(geometry) + IntBytes(particles) +
                            IntBytes(columns) + FloatBytes(header1) + FloatBytes(header2) + FloatsBytes(t) +
                            FloatsBytes(maxima) + FloatsBytes(minima) + TextBytes(units) + TextBytes(note) +
                            TextBytes(stamp);
        for (ParticleRow const &row : rows) bytes += FloatsBytes(row);
        return bytes;
    }
};

/// A group whose every field a test can see.
class OpenParticles : public ParticleGroup {
public:
    using ParticleGroup::Append;
    using ParticleGroup::geometry;
    using ParticleGroup::ParticleGroup;
    using ParticleGroup::Read;
    using ParticleGroup::Write;

    OpenParticles() = default;
    /// Whole, unlike copies of groups.
    OpenParticles(OpenParticles const &other) : ParticleGroup(other) { takerest(other); }
    OpenParticles(OpenParticles &&other)
    {
        CopyHeader(other);
        takerest(other);
        SwapData(other);
    }
    OpenParticles &operator=(OpenParticles const &other) = delete;
    explicit OpenParticles(std::vector<ParticleRow> const &rows)
    {
        Size(static_cast<int>(rows.size()));
        origParticles = nParticles();
        float *next = Data();
        for (ParticleRow const &row : rows)
            for (float value : row) *next++ = value;
    }

    std::string RowBytes() const { return BytesOf(Data(), 8 * nParticles()); }

    /// Every field but the rows, in words.
    std::string Header() const
    {
        std::string text = Numbers({header1, header2, t1, t2, t3, t4, t5}) + "| " +
                           Numbers({maxValues, maxValues + 8}) + "| " + Numbers({minValues, minValues + 8}) + "| " +
                           Plain(units) + " " + Plain(note) + " " + Plain(stamp) + " | ";
        for (int n : {geometry, origGeometry, nOrigParticles(), nParticles()}) text += std::to_string(n) + " ";
        return text;
    }

private:
    void takerest(OpenParticles const &other)
    {
        origParticles = other.origParticles;
        origGeometry = other.origGeometry;
        std::copy(other.maxValues, other.maxValues + 8, maxValues);
        std::copy(other.minValues, other.minValues + 8, minValues);
    }
    static std::string Numbers(std::vector<float> const &values)
    {
        std::string text;
        for (float value : values) {
            std::string number = FixedText(value);
            number.erase(number.find_last_not_of('0') + 1);
            if (number.back() == '.') number.pop_back();
            text += number + " ";
        }
        return text;
    }
};
