// SPDX-License-Identifier: MIT
// Runs a fuzzer without libFuzzer, with a few of its options: first every input of the corpus, then
// mutations of them, which depend only on the seed.
//
//   <fuzzer> [-runs=<mutations>] [-seed=<number>] <file or folder>...
//
// A finding leaves its input in a file, which can be passed to the fuzzer as an argument.
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/Mutator.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <unistd.h>

/// Part of the sanitizers' run-time library; null without sanitizers.
extern "C" __attribute__((weak)) void __sanitizer_set_death_callback(void (*callback)());

namespace {

using fuzz::Input;

constexpr const char *findingFile = "fuzz-finding";
Input present; // the input that is running

/// Uses only calls that are allowed in a signal handler.
void keepPresentInput()
{
    const int file = open(findingFile, O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0600);
    if (file < 0)
        return;
    (void)!write(file, present.data(), present.size());
    close(file);
    constexpr std::string_view note = "The input was left in the file fuzz-finding\n";
    (void)!write(STDERR_FILENO, note.data(), note.size());
}

void onDeadlySignal(int number)
{
    keepPresentInput();
    (void)std::signal(number, SIG_DFL);
    (void)std::raise(number);
}

void keepInputsOfFindings()
{
    // Sanitizers handle segmentation faults themselves and call back before they exit.
    if (__sanitizer_set_death_callback)
        __sanitizer_set_death_callback(keepPresentInput);
    else
        (void)std::signal(SIGSEGV, onDeadlySignal);
    (void)std::signal(SIGABRT, onDeadlySignal);
}

void tryInput(const Input &input)
{
    present = input;
    // A copy of exactly this size, so that a sanitizer reports the first byte beyond it.
    const auto exact = std::make_unique<std::uint8_t[]>(input.size());
    std::copy(input.begin(), input.end(), exact.get());
    LLVMFuzzerTestOneInput(exact.get(), input.size());
}

Input contentOf(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// All files of a folder in alphabetical order, or the file itself.
std::vector<Input> corpusIn(const std::filesystem::path &path)
{
    std::vector<std::filesystem::path> files;
    if (is_directory(path)) {
        for (const auto &entry : std::filesystem::directory_iterator(path))
            files.push_back(entry.path());
        std::sort(files.begin(), files.end());
    } else if (exists(path)) {
        files.push_back(path);
    }
    std::vector<Input> corpus;
    for (const auto &file : files)
        corpus.push_back(contentOf(file));
    return corpus;
}

struct Options {
    unsigned long runs = 0;
    std::uint32_t seed = 1;
    std::vector<Input> corpus;
};

Options optionsFrom(int argc, char **argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument.starts_with("-runs=")) {
            options.runs = std::stoul(argument.substr(6));
        } else if (argument.starts_with("-seed=")) {
            options.seed = static_cast<std::uint32_t>(std::stoul(argument.substr(6)));
        } else {
            for (Input &input : corpusIn(argument))
                options.corpus.push_back(std::move(input));
        }
    }
    return options;
}

} // namespace

int main(int argc, char **argv)
{
    const Options options = optionsFrom(argc, argv);
    if (options.corpus.empty()) {
        std::fprintf(stderr, "No input found\n");
        return 2;
    }
    keepInputsOfFindings();
    tryInput({});
    for (const Input &input : options.corpus)
        tryInput(input);
    fuzz::Mutator mutator(options.seed, options.corpus);
    for (unsigned long run = 0; run < options.runs; ++run)
        tryInput(mutator.next());
    std::printf("%zu inputs of the corpus and %lu mutations of them: no finding\n",
                options.corpus.size(), options.runs);
    return 0;
}
