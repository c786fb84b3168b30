#pragma once

#include <cstddef>
#include <tuple>
#include <type_traits>

#include <Corvane/Platform/JSON/MemberCount.hpp>

namespace corvane::detail {

/// References to all members of a plain struct, in their order.
template <class Object>
constexpr auto memberReferences([[maybe_unused]] Object& object) {
    constexpr std::size_t count = memberCount<std::remove_const_t<Object>>();
    // A structured binding has to list its names, so every count has its line.
    // clang-format off
    if constexpr (count == 0) {
        return std::tuple<>();
    } else if constexpr (count == 1) {
        auto& [a] = object; return std::tie(a);
    } else if constexpr (count == 2) {
        auto& [a, b] = object; return std::tie(a, b);
    } else if constexpr (count == 3) {
        auto& [a, b, c] = object; return std::tie(a, b, c);
    } else if constexpr (count == 4) {
        auto& [a, b, c, d] = object; return std::tie(a, b, c, d);
    } else if constexpr (count == 5) {
        auto& [a, b, c, d, e] = object; return std::tie(a, b, c, d, e);
    } else if constexpr (count == 6) {
        auto& [a, b, c, d, e, f] = object; return std::tie(a, b, c, d, e, f);
    } else if constexpr (count == 7) {
        auto& [a, b, c, d, e, f, g] = object; return std::tie(a, b, c, d, e, f, g);
    } else if constexpr (count == 8) {
        auto& [a, b, c, d, e, f, g, h] = object; return std::tie(a, b, c, d, e, f, g, h);
    } else if constexpr (count == 9) {
        auto& [a, b, c, d, e, f, g, h, i] = object; return std::tie(a, b, c, d, e, f, g, h, i);
    } else if constexpr (count == 10) {
        auto& [a, b, c, d, e, f, g, h, i, j] = object; return std::tie(a, b, c, d, e, f, g, h, i, j);
    } else if constexpr (count == 11) {
        auto& [a, b, c, d, e, f, g, h, i, j, k] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k);
    } else if constexpr (count == 12) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l);
    } else if constexpr (count == 13) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m);
    } else if constexpr (count == 14) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l,
            m, n);
    } else if constexpr (count == 15) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k,
            l, m, n, o);
    } else if constexpr (count == 16) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p] = object; return std::tie(a, b, c, d, e, f, g, h, i, j,
            k, l, m, n, o, p);
    } else if constexpr (count == 17) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q] = object; return std::tie(a, b, c, d, e, f, g, h, i,
            j, k, l, m, n, o, p, q);
    } else if constexpr (count == 18) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r] = object; return std::tie(a, b, c, d, e, f, g, h,
            i, j, k, l, m, n, o, p, q, r);
    } else if constexpr (count == 19) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s] = object; return std::tie(a, b, c, d, e, f, g,
            h, i, j, k, l, m, n, o, p, q, r, s);
    } else if constexpr (count == 20) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t] = object; return std::tie(a, b, c, d, e, f,
            g, h, i, j, k, l, m, n, o, p, q, r, s, t);
    } else if constexpr (count == 21) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u] = object; return std::tie(a, b, c, d, e,
            f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u);
    } else if constexpr (count == 22) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v] = object; return std::tie(a, b, c, d,
            e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v);
    } else if constexpr (count == 23) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w] = object; return std::tie(a, b, c,
            d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w);
    } else if constexpr (count == 24) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x] = object; return std::tie(a, b,
            c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x);
    } else if constexpr (count == 25) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y] = object; return std::tie(a,
            b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y);
    } else if constexpr (count == 26) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z] = object; return
            std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z);
    } else if constexpr (count == 27) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba] = object; return
            std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba);
    } else if constexpr (count == 28) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb] = object; return
            std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb);
    } else if constexpr (count == 29) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc] = object;
            return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc);
    } else if constexpr (count == 30) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd] = object;
            return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc,
            bd);
    } else if constexpr (count == 31) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be] =
            object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba,
            bb, bc, bd, be);
    } else if constexpr (count == 32) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf] =
            object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba,
            bb, bc, bd, be, bf);
    } else if constexpr (count == 33) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z,
            ba, bb, bc, bd, be, bf, bg);
    } else if constexpr (count == 34) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x,
            y, z, ba, bb, bc, bd, be, bf, bg, bh);
    } else if constexpr (count == 35) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w,
            x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi);
    } else if constexpr (count == 36) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v,
            w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj);
    } else if constexpr (count == 37) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t,
            u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk);
    } else if constexpr (count == 38) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s,
            t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl);
    } else if constexpr (count == 39) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r,
            s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm);
    } else if constexpr (count == 40) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p,
            q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn);
    } else if constexpr (count == 41) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o,
            p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo);
    } else if constexpr (count == 42) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n,
            o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp);
    } else if constexpr (count == 43) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l,
            m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp,
            bq);
    } else if constexpr (count == 44) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k,
            l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo,
            bp, bq, br);
    } else if constexpr (count == 45) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs] = object; return std::tie(a, b, c, d, e, f, g, h, i, j,
            k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo,
            bp, bq, br, bs);
    } else if constexpr (count == 46) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt] = object; return std::tie(a, b, c, d, e, f, g, h,
            i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm,
            bn, bo, bp, bq, br, bs, bt);
    } else if constexpr (count == 47) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu] = object; return std::tie(a, b, c, d, e, f, g,
            h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl,
            bm, bn, bo, bp, bq, br, bs, bt, bu);
    } else if constexpr (count == 48) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv] = object; return std::tie(a, b, c, d, e, f,
            g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl,
            bm, bn, bo, bp, bq, br, bs, bt, bu, bv);
    } else if constexpr (count == 49) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw] = object; return std::tie(a, b, c, d,
            e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj,
            bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw);
    } else if constexpr (count == 50) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx] = object; return std::tie(a, b, c,
            d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi,
            bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx);
    } else if constexpr (count == 51) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by] = object; return std::tie(a, b,
            c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi,
            bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by);
    } else if constexpr (count == 52) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz] = object; return
            std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be,
            bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz);
    } else if constexpr (count == 53) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca] = object; return
            std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be,
            bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca);
    } else if constexpr (count == 54) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb] = object; return
            std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be,
            bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb);
    } else if constexpr (count == 55) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb, cc] = object;
            return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc,
            bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb, cc);
    } else if constexpr (count == 56) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb, cc, cd] = object;
            return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc,
            bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb, cc,
            cd);
    } else if constexpr (count == 57) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb, cc, cd, ce] =
            object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba,
            bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb,
            cc, cd, ce);
    } else if constexpr (count == 58) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb, cc, cd, ce, cf] =
            object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba,
            bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb,
            cc, cd, ce, cf);
    } else if constexpr (count == 59) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb, cc, cd, ce, cf, cg]
            = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba,
            bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb,
            cc, cd, ce, cf, cg);
    } else if constexpr (count == 60) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb, cc, cd, ce, cf, cg,
            ch] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z,
            ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca,
            cb, cc, cd, ce, cf, cg, ch);
    } else if constexpr (count == 61) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb, cc, cd, ce, cf, cg,
            ch, ci] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x,
            y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by,
            bz, ca, cb, cc, cd, ce, cf, cg, ch, ci);
    } else if constexpr (count == 62) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb, cc, cd, ce, cf, cg,
            ch, ci, cj] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w,
            x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx,
            by, bz, ca, cb, cc, cd, ce, cf, cg, ch, ci, cj);
    } else if constexpr (count == 63) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb, cc, cd, ce, cf, cg,
            ch, ci, cj, ck] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v,
            w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx,
            by, bz, ca, cb, cc, cd, ce, cf, cg, ch, ci, cj, ck);
    } else if constexpr (count == 64) {
        auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z, ba, bb, bc, bd, be, bf,
            bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv, bw, bx, by, bz, ca, cb, cc, cd, ce, cf, cg,
            ch, ci, cj, ck, cl] = object; return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t,
            u, v, w, x, y, z, ba, bb, bc, bd, be, bf, bg, bh, bi, bj, bk, bl, bm, bn, bo, bp, bq, br, bs, bt, bu, bv,
            bw, bx, by, bz, ca, cb, cc, cd, ce, cf, cg, ch, ci, cj, ck, cl);
    }
    // clang-format on
}

}  // namespace corvane::detail
