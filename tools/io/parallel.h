// Work on chunks of a stream by several threads, with the order kept.
#pragma once

#include <tbb/enumerable_thread_specific.h>
#include <tbb/global_control.h>
#include <tbb/parallel_pipeline.h>

#include <atomic>
#include <exception>
#include <memory>
#include <optional>

#include "io/chunks.h"

namespace io {

// One for each thread that asks for it.
template <typename Worker>
using PerThread = tbb::enumerable_thread_specific<Worker>;

// Makes a product of every chunk, on whatever thread is free, and hands the products on one at a time, in the order of
// the stream. What any of them throws ends the work and is thrown here, the first in that order. It does not go through
// the pipeline, which would forget what is under way in it.
template <typename Product, typename Make, typename Take>
void work_through(ChunkReader& reader, unsigned threads, Make make, Take take) {
    struct Item {
        std::shared_ptr<const Chunk> chunk{};
        std::optional<Product> product{};
        std::exception_ptr failure{};
    };
    using Handed = std::shared_ptr<Item>;
    const tbb::global_control limit{tbb::global_control::max_allowed_parallelism, threads};
    const std::size_t chunks_at_once = std::size_t{2} * threads;
    std::exception_ptr failure;
    std::atomic<bool> ended = false;
    const auto read = [&](tbb::flow_control& control) -> Handed {
        auto item = std::make_shared<Item>();
        try {
            item->chunk = ended ? nullptr : reader.next();
        } catch (...) {
            item->failure = std::current_exception();
            ended = true;
            return item;
        }
        if (!item->chunk) {
            control.stop();
        }
        return item;
    };
    const auto work = [&](const Handed& item) -> Handed {
        if (!item->failure) {
            try {
                item->product.emplace(make(*item->chunk));
            } catch (...) {
                item->failure = std::current_exception();
            }
        }
        return item;
    };
    const auto hand_on = [&](const Handed& item) {
        if (failure) {
            return;
        }
        if (!item->failure) {
            try {
                take(*item->product);
            } catch (...) {
                item->failure = std::current_exception();
            }
        }
        failure = item->failure;
        ended = ended || failure != nullptr;
    };
    tbb::parallel_pipeline(chunks_at_once,
                           tbb::make_filter<void, Handed>(tbb::filter_mode::serial_in_order, read) &
                               tbb::make_filter<Handed, Handed>(tbb::filter_mode::parallel, work) &
                               tbb::make_filter<Handed, void>(tbb::filter_mode::serial_in_order, hand_on));
    if (failure) {
        std::rethrow_exception(failure);
    }
}

}  // namespace io
