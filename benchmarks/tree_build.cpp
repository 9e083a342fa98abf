// SPDX-License-Identifier: MIT
// Measures how long the feature tree takes to read five hundred extra nodes from a simulated
// camera.
#include "sdk/OrvalisAPI.h"
#include "tree/TreeModel.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int runs = 21;
constexpr double goalMs = 50.0;

OCameraHandle openFirstCamera()
{
    std::uint32_t count = 0;
    char id[ORVALIS_NAME_SIZE] = {};
    OCameraHandle camera = nullptr;
    if (OrvalisNumberOfCameras(&count) != ORVALIS_OK || count == 0 ||
        OrvalisGetCameraID(0, id) != ORVALIS_OK || OrvalisOpenCamera(id, &camera) != ORVALIS_OK)
        return nullptr;
    return camera;
}

int nodesBelow(const TreeModel &model, const QModelIndex &parent)
{
    int nodes = model.rowCount(parent);
    for (int row = model.rowCount(parent) - 1; row >= 0; --row)
        nodes += nodesBelow(model, model.index(row, 0, parent));
    return nodes;
}

double buildMs(OCameraHandle camera, int *nodes)
{
    const auto start = std::chrono::steady_clock::now();
    const TreeModel model({QStringLiteral("Root")}, camera);
    const std::chrono::duration<double, std::milli> elapsed =
        std::chrono::steady_clock::now() - start;
    *nodes = nodesBelow(model, {});
    return elapsed.count();
}

int measure(OCameraHandle camera)
{
    int nodes = 0;
    std::vector<double> times;
    for (int run = 0; run < runs; ++run)
        times.push_back(buildMs(camera, &nodes));
    std::sort(times.begin(), times.end());
    const double median = times[times.size() / 2];
    std::printf("tree of %d nodes: median %.2f ms, best %.2f ms, worst %.2f ms (goal %.0f ms)\n",
                nodes, median, times.front(), times.back(), goalMs);
    return median < goalMs ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    qputenv("ORVALIS_BACKENDS", "simulated");
    qputenv("ORVALIS_SIMULATED_EXTRA_NODES", "500");
    (void)OrvalisInit();
    int result = EXIT_FAILURE;
    if (OCameraHandle camera = openFirstCamera()) {
        result = measure(camera);
        (void)OrvalisCloseCamera(camera);
    } else {
        std::fprintf(stderr, "tree_build: no camera\n");
    }
    (void)OrvalisUninit();
    return result;
}
