// Peer: another library under the same operations.
//
// A peer is a class whose objects hold one document. It has a constructor for a shape, readfile()
// and readmemory(), which return false on failure, get() for an integer parameter, and clear(). It
// has set() and print() if the library can do that. `name` and `syntax` are static.
// SPDX-License-Identifier: MIT
#pragma once

#include "operations.h"
#include "ours/trees.h"
#include "syntax.h"

namespace bench {

template <class Peer> std::shared_ptr<Peer> loaded(const Shape &shape) {
  auto peer = std::make_shared<Peer>(shape);
  return peer->readmemory(input(shape, Peer::syntax).text) ? peer : (broken(Peer::name), nullptr);
}

template <class Peer> Task peerreadingfile(const Shape &shape) {
  auto peer = std::make_shared<Peer>(shape);
  return {.work =
              [peer, &in = input(shape, Peer::syntax)] {
                if (!peer->readfile(in.file))
                  broken(Peer::name);
              },
          .clear = [peer] { peer->clear(); }};
}

template <class Peer> Task peerreadingmemory(const Shape &shape) {
  auto peer = std::make_shared<Peer>(shape);
  return {.work =
              [peer, &in = input(shape, Peer::syntax)] {
                if (!peer->readmemory(in.text))
                  broken(Peer::name);
              },
          .clear = [peer] { peer->clear(); }};
}

template <class Peer> Task peerlookup(const Shape &shape) {
  return {.work =
              [&shape, peer = loaded<Peer>(shape)] {
                for (const Route &route : shape.routes)
                  if (peer->get(route) != route.value)
                    broken(Peer::name);
              },
          .units = shape.routes.size()};
}

/// Sets integers to the values of the shape, so that all rounds are the same. Before the first
/// round they get another value, to see that set() has an effect.
template <class Peer> Task peersetting(const Shape &shape) {
  const auto peer = loaded<Peer>(shape);
  for (const Route &route : shape.routes)
    if (peer->set(route, -1); peer->get(route) != -1)
      broken(Peer::name);
  return {.work =
              [&shape, peer] {
                for (const Route &route : shape.routes)
                  peer->set(route, route.value);
              },
          .units = shape.routes.size()};
}

template <class Peer> Task peerprinting(const Shape &shape) {
  return {.work = [peer = loaded<Peer>(shape), sink = opensink()] { peer->print(sink.get()); }};
}

template <class Peer> Task peerdeleting(const Shape &shape) {
  auto peer = std::make_shared<Peer>(shape);
  return {.work = [peer] { peer->clear(); },
          .prepare = [peer, &in = input(shape, Peer::syntax)] { peer->readmemory(in.text); }};
}

/// For static registration.
template <class Peer> bool addpeer() {
  add({"ReadFile", Peer::name, peerreadingfile<Peer>});
  add({"ReadMemory", Peer::name, peerreadingmemory<Peer>, true});
  add({"Lookup", Peer::name, peerlookup<Peer>});
  if constexpr (requires(Peer peer, Route route) { peer.set(route, 1); })
    add({"EditSet", Peer::name, peersetting<Peer>});
  if constexpr (requires(Peer peer, std::FILE * fd) { peer.print(fd); })
    add({"Print", Peer::name, peerprinting<Peer>});
  return add({"Delete", Peer::name, peerdeleting<Peer>});
}

} // namespace bench
