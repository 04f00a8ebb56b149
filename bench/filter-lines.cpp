// SPDX-License-Identifier: MIT
// filter-lines QUERY: reads lines on standard input and prints those that FuzzyMatch.match
// accepts, best score first; lines with equal scores keep their input order.

#include "search/FuzzyMatch.h"
#include "search/FuzzyQuery.h"

#include <QString>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace {

bool readAll(int fd, std::vector<char>& data)
{
    std::size_t used = 0;
    struct stat info = {};
    // A regular file is read into a buffer of its size at once; a pipe grows the buffer.
    const bool sized = fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0;
    data.resize(sized ? std::size_t(info.st_size) + 1 : std::size_t(1) << 22);
    for (;;) {
        if (used == data.size())
            data.resize(data.size() * 2);
        const ssize_t got = read(fd, data.data() + used, data.size() - used);
        if (got == 0)
            break;
        if (got < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        used += std::size_t(got);
    }
    data.resize(used);
    return true;
}

bool writeAll(int fd, const char* bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t done = write(fd, bytes, size);
        if (done < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        bytes += done;
        size -= std::size_t(done);
    }
    return true;
}

struct Hit
{
    qint64 score;
    std::size_t offset;
    std::size_t length;
};

// Best score first, ties in input order. Scores span a small range, so a counting sort does it
// in linear time; a wide range falls back to a stable comparison sort.
void sortByScore(std::vector<Hit>& hits)
{
    if (hits.empty())
        return;
    const auto [low, high] = std::minmax_element(
        hits.begin(), hits.end(), [](const Hit& a, const Hit& b) { return a.score < b.score; });
    const qint64 lowest = low->score;
    const qint64 highest = high->score;
    if (highest - lowest > 1'000'000) {
        std::stable_sort(hits.begin(), hits.end(),
                         [](const Hit& a, const Hit& b) { return a.score > b.score; });
        return;
    }
    std::vector<std::size_t> start(std::size_t(highest - lowest) + 2, 0);
    for (const Hit& hit : hits)
        ++start[std::size_t(highest - hit.score) + 1];
    for (std::size_t i = 1; i < start.size(); ++i)
        start[i] += start[i - 1];
    std::vector<Hit> sorted(hits.size());
    for (const Hit& hit : hits)
        sorted[start[std::size_t(highest - hit.score)]++] = hit;
    hits.swap(sorted);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: filter-lines QUERY < lines\n");
        return 2;
    }
    const Tessaline::FuzzyQuery query(QString::fromUtf8(argv[1]));

    std::vector<char> input;
    if (!readAll(STDIN_FILENO, input)) {
        std::fprintf(stderr, "filter-lines: cannot read standard input: %s\n",
                     std::strerror(errno));
        return 1;
    }

    std::vector<Hit> hits;
    const char* begin = input.data();
    const char* const end = begin + input.size();
    while (begin < end) {
        const char* newline = static_cast<const char*>(std::memchr(begin, '\n', end - begin));
        const char* lineEnd = newline ? newline : end;
        const std::size_t length = std::size_t(lineEnd - begin);
        if (const auto score =
                Tessaline::FuzzyMatch::matchScore(query, QByteArrayView(begin, qsizetype(length))))
            hits.push_back(Hit{*score, std::size_t(begin - input.data()), length});
        begin = lineEnd + 1;
    }

    sortByScore(hits);

    std::vector<char> output;
    std::size_t total = 0;
    for (const Hit& hit : hits)
        total += hit.length + 1;
    output.reserve(total);
    for (const Hit& hit : hits) {
        output.insert(output.end(), input.data() + hit.offset,
                      input.data() + hit.offset + hit.length);
        output.push_back('\n');
    }
    if (!writeAll(STDOUT_FILENO, output.data(), output.size())) {
        std::fprintf(stderr, "filter-lines: cannot write: %s\n", std::strerror(errno));
        return 1;
    }
    return 0;
}
