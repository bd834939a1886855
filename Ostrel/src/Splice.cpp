// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Splice.h"

#include "Fold.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace Ostrel {

namespace {

constexpr double matchingDistance = 1.0; // seconds between the starts of a word heard twice, at most
constexpr size_t shortestRun = 2; // a single word in common says nothing

// A word in the overlap, with its place in its list.
struct Candidate {
    size_t index;
    double start;
    std::string folded;
};

struct Run {
    size_t first; // in the left candidates
    size_t second; // in the right ones
    size_t length;
    double distance; // seconds between the starts of its first words
};

template <typename Predicate> std::vector<Candidate> candidates(const std::vector<Word>& words, Predicate isInOverlap)
{
    std::vector<Candidate> found;
    for (size_t i = 0; i < words.size(); ++i)
        if (isInOverlap(words[i].start))
            found.push_back({ i, words[i].start, fold(words[i].text) });
    return found;
}

bool match(const Candidate& a, const Candidate& b)
{
    return std::abs(a.start - b.start) <= matchingDistance && a.folded == b.folded;
}

Run runAt(const std::vector<Candidate>& left, const std::vector<Candidate>& right, size_t i, size_t j)
{
    size_t length = 0;
    while (i + length < left.size() && j + length < right.size() && match(left[i + length], right[j + length]))
        ++length;
    return { i, j, length, std::abs(left[i].start - right[j].start) };
}

// The longest run; of equals the one whose first words start closest; of those the first.
std::optional<Run> bestRun(const std::vector<Candidate>& left, const std::vector<Candidate>& right)
{
    std::optional<Run> best;
    for (size_t i = 0; i < left.size(); ++i) {
        for (size_t j = 0; j < right.size(); ++j) {
            const Run run = runAt(left, right, i, j);
            if (run.length < shortestRun)
                continue;
            if (!best || run.length > best->length || (run.length == best->length && run.distance < best->distance))
                best = run;
        }
    }
    return best;
}

std::vector<Word> concatenated(std::vector<Word> left, std::vector<Word> right)
{
    left.insert(left.end(), std::move_iterator(right.begin()), std::move_iterator(right.end()));
    return left;
}

// `left` up to the run's first word, then the run's own words as `left` has them.
std::vector<Word> upToEndOf(const Run& run, std::vector<Word> left, const std::vector<Candidate>& candidates)
{
    std::vector<Word> common;
    for (size_t q = 0; q < run.length; ++q)
        common.push_back(left[candidates[run.first + q].index]);
    left.resize(candidates[run.first].index);
    return concatenated(std::move(left), std::move(common));
}

bool endsSentence(const std::string& text)
{
    return !text.empty() && std::string_view(".!?").find(text.back()) != std::string_view::npos;
}

} // namespace

std::vector<Word> repairJoin(std::vector<Word> left, std::vector<Word> right)
{
    if (left.empty() || right.empty())
        return concatenated(std::move(left), std::move(right));

    Word& last = left.back();
    const Word& next = right.front();
    const bool heardTwice = fold(last.text) == fold(next.text) && (last.text != next.text || next.start < last.end);
    if (heardTwice)
        right.erase(right.begin());
    if (right.empty())
        return left;

    if (endsSentence(last.text) && beginsLowerCase(right.front().text)) {
        last.text.pop_back();
        last.end = std::max(last.start, last.end);
    }
    return concatenated(std::move(left), std::move(right));
}

std::vector<Word> spliceOverlap(std::vector<Word> left, std::vector<Word> right, double boundary, double overlap)
{
    if (left.empty() || right.empty())
        return concatenated(std::move(left), std::move(right));

    const auto leftCandidates = candidates(left, [&](double start) { return start >= boundary - overlap; });
    const auto rightCandidates = candidates(right, [&](double start) { return start < boundary + overlap; });
    if (const std::optional<Run> run = bestRun(leftCandidates, rightCandidates)) {
        const size_t afterRun = rightCandidates[run->second].index + run->length;
        right.erase(right.begin(), right.begin() + static_cast<ptrdiff_t>(afterRun));
        return repairJoin(upToEndOf(*run, std::move(left), leftCandidates), std::move(right));
    }

    std::erase_if(left, [&](const Word& word) { return !(word.start < boundary); });
    std::erase_if(right, [&](const Word& word) { return !(word.start >= boundary); });
    if (leftCandidates.empty() || rightCandidates.empty())
        return concatenated(std::move(left), std::move(right));
    return repairJoin(std::move(left), std::move(right));
}

} // namespace Ostrel
