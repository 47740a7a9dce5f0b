// edge: the schema of a service: what its configuration file may contain.
// SPDX-License-Identifier: MIT
#pragma once

#include <cf.hpp>

//! [schema]
enum class level { debug, info, warning, error };

inline const cf::schema schema{
    cf::key("workers").integer(1, 256).otherwise(4).help("Number of worker threads."),
    cf::key("log_level")
        .words<level>({{"debug", level::debug},
                       {"info", level::info},
                       {"warning", level::warning},
                       {"error", level::error}})
        .otherwise(level::info),
    cf::key("listen").text().many().required().example("192.0.2.1:80"),
    cf::one("tls", cf::key("cert").text().required(), cf::key("key").text().required()),
    cf::each("upstream", cf::key("addr").text().required(),
             cf::key("port").integer(1, 65535).required(),
             cf::key("weight").integer(0, 100).otherwise(1),
             cf::key("timeout").duration().otherwise(std::chrono::seconds(5)),
             cf::key("buffer").bytes().otherwise(65536)),
};
//! [schema]
