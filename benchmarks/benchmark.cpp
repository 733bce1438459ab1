#include "benchmark.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <map>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <valgrind/callgrind.h>
#include <vector>

namespace {

struct Measure
{
    std::string subject, target;
    double ours = 0, floor = 0;
};

std::vector<Measure> &asked()
{
    static std::vector<Measure> measures;
    return measures;
}

std::string fields(const std::string &subject, const char *unit, const char *side)
{
    return subject + '|' + unit + '|' + side;
}

void print(const std::string &subject, const char *unit, const char *side, double value,
           const std::string &target)
{
    std::printf("%s|%.10g|%s\n", fields(subject, unit, side).c_str(), value, target.c_str());
}

class BestOfRuns : public benchmark::BenchmarkReporter
{
public:
    bool failed = false;
    std::map<std::string, double> bestTimes; // ns
    bool ReportContext(const Context & /*context*/) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(),
                             run.error_message.c_str());
                failed = true;
            }
            if (run.run_type != Run::RT_Iteration)
                continue;
            const auto known =
                bestTimes.emplace(run.run_name.function_name, run.GetAdjustedRealTime()).first;
            known->second = std::min(known->second, run.GetAdjustedRealTime());
        }
    }
};

void registerSide(const char *subject, const char *side, const Bench::Step &step)
{
    benchmark::RegisterBenchmark(fields(subject, "ns", side).c_str(),
                                 [step](benchmark::State &state) {
                                     for ([[maybe_unused]] auto turn : state)
                                         step();
                                 });
}

// The duration in seconds that a copy of this process has taken; 0 if it failed.
double runInCopy(const Bench::TimedStep &step)
{
    int ends[2];
    double seconds = 0;
    if (pipe(ends) != 0)
        return 0;
    const pid_t copy = fork();
    if (copy == 0) {
        seconds = step() * 1e-9;
        _exit(write(ends[1], &seconds, sizeof seconds) == sizeof seconds ? 0 : 1);
    }
    close(ends[1]);
    if (copy < 0 || read(ends[0], &seconds, sizeof seconds) != sizeof seconds)
        seconds = 0;
    close(ends[0]);
    waitpid(copy, nullptr, 0);
    return seconds;
}

void registerSideInCopies(const char *subject, const char *side, const Bench::TimedStep &step)
{
    benchmark::RegisterBenchmark(fields(subject, "ns", side).c_str(),
                                 [step](benchmark::State &state) {
                                     for ([[maybe_unused]] auto turn : state) {
                                         const double seconds = runInCopy(step);
                                         if (seconds > 0)
                                             state.SetIterationTime(seconds);
                                         else
                                             state.SkipWithError("a copy failed");
                                     }
                                 })
        ->UseManualTime()
        ->Iterations(1)
        ->Repetitions(60);
}

void count(const std::string &name, const Bench::Step &step)
{
    // What is bound, cached and allocated once does not count.
    step();
    step();
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    step();
    CALLGRIND_DUMP_STATS_AT(name.c_str());
    CALLGRIND_STOP_INSTRUMENTATION;
}

} // namespace

void Bench::time(const char *subject, const char *target, const Step &ours, const Step &floor)
{
    asked().push_back({subject, target});
    registerSide(subject, "ours", ours);
    registerSide(subject, "floor", floor);
}

void Bench::timeInCopies(const char *subject, const char *target, const TimedStep &ours,
                         const TimedStep &floor)
{
    asked().push_back({subject, target});
    registerSideInCopies(subject, "ours", ours);
    registerSideInCopies(subject, "floor", floor);
}

void Bench::instructions(const char *subject, const char *target, const Step &ours,
                         const Step &floor)
{
    if (!RUNNING_ON_VALGRIND)
        return;
    const auto name = [&](const char *side) {
        return fields(subject, "instructions", side) + "||" + target;
    };
    count(name("floor"), floor);
    count(name("ours"), ours);
}

void Bench::figure(const char *subject, const char *unit, const char *target, double ours,
                   double floor)
{
    if (RUNNING_ON_VALGRIND)
        return;
    print(subject, unit, "ours", ours, target);
    print(subject, unit, "floor", floor, target);
}

int Bench::run()
{
    if (RUNNING_ON_VALGRIND || asked().empty())
        return 0;
    std::string arguments[] = {"bench", "--benchmark_repetitions=15", "--benchmark_min_time=0.02",
                               "--benchmark_enable_random_interleaving=true"};
    char *argv[std::size(arguments)];
    std::transform(std::begin(arguments), std::end(arguments), argv,
                   [](std::string &argument) { return argument.data(); });
    int argc = static_cast<int>(std::size(arguments));
    benchmark::Initialize(&argc, argv);
    BestOfRuns reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    if (reporter.failed)
        return 1;
    for (const Measure &measure : asked()) {
        for (const char *side : {"ours", "floor"}) {
            const auto best = reporter.bestTimes.find(fields(measure.subject, "ns", side));
            if (best == reporter.bestTimes.end())
                return 1;
            print(measure.subject, "ns", side, best->second, measure.target);
        }
    }
    return 0;
}

double Bench::bestOf(int runs, const Step &step)
{
    using Clock = std::chrono::steady_clock;
    double best = 0;
    for (int i = 0; i < runs; ++i) {
        const auto start = Clock::now();
        step();
        const double spent = std::chrono::duration<double, std::nano>(Clock::now() - start).count();
        best = i == 0 ? spent : std::min(best, spent);
    }
    return best;
}
