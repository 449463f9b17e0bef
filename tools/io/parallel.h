// Work on chunks of a stream by several threads, with the order kept.
#pragma once

#include <tbb/enumerable_thread_specific.h>
#include <tbb/global_control.h>
#include <tbb/parallel_pipeline.h>

#include <memory>

#include "io/chunks.h"

namespace io {

// One for each thread that asks for it.
template <typename Worker>
using PerThread = tbb::enumerable_thread_specific<Worker>;

// Makes a product of every chunk, on whatever thread is free, and hands the products on one at a time, in the order of
// the stream. What any of them throws is thrown here.
template <typename Product, typename Make, typename Take>
void work_through(ChunkReader& reader, unsigned threads, Make make, Take take) {
    using Input = std::shared_ptr<const Chunk>;
    using Output = std::shared_ptr<Product>;
    const tbb::global_control limit{tbb::global_control::max_allowed_parallelism, threads};
    const std::size_t chunks_at_once = std::size_t{2} * threads;
    const auto read = [&reader](tbb::flow_control& control) -> Input {
        Input chunk = reader.next();
        if (!chunk) {
            control.stop();
        }
        return chunk;
    };
    const auto work = [&make](const Input& chunk) -> Output { return std::make_shared<Product>(make(*chunk)); };
    const auto hand_on = [&take](const Output& product) { take(*product); };
    tbb::parallel_pipeline(chunks_at_once,
                           tbb::make_filter<void, Input>(tbb::filter_mode::serial_in_order, read) &
                               tbb::make_filter<Input, Output>(tbb::filter_mode::parallel, work) &
                               tbb::make_filter<Output, void>(tbb::filter_mode::serial_in_order, hand_on));
}

}  // namespace io
