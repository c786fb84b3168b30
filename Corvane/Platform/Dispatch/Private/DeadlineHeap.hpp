#pragma once

#include <atomic>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <Corvane/Platform/Dispatch/Clock.hpp>

namespace corvane {

template <class Entry>
class DeadlineHeap;

/// A deadline that stands in a `DeadlineHeap`, and can be moved without touching the heap: derive from it what has
/// one. `moveTo`, `keepMoved` and `wanted` may be called on any thread; the rest is the heap's, under the lock of
/// its owner.
class Deadline {
  public:
    Deadline() = default;
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

    /// Moves the deadline, which costs one store. When it gives true the new instant is earlier than the one that
    /// the heap counts on, and the caller must take the heap's lock and call `DeadlineHeap::hasten`.
    [[nodiscard]] bool moveTo(SteadyInstant instant) noexcept {
        // With sequential consistency either the heap sees the new deadline when it next looks at this entry, or
        // the mover sees that the heap is at it (`armed_` is "never" then) and waits for the lock.
        wanted_.store(instant, std::memory_order_seq_cst);
        return instant < armed_.load(std::memory_order_seq_cst);
    }

    /// Sets the next deadline of an entry that came due, unless somebody has moved it since; false if so.
    bool setUnlessMoved(SteadyInstant instant) noexcept {
        SteadyInstant expected = taken;
        return wanted_.compare_exchange_strong(expected, instant, std::memory_order_seq_cst);
    }

    /// Whether the entry was moved since it came due.
    [[nodiscard]] bool isMoved() const noexcept { return wanted_.load(std::memory_order_seq_cst) != taken; }

    /// The deadline at which the entry came due last. For the thread that took it off the heap.
    [[nodiscard]] SteadyInstant due() const noexcept { return due_; }

  protected:
    ~Deadline() = default;

  private:
    template <class Entry>
    friend class DeadlineHeap;

    static constexpr SteadyInstant taken = SteadyInstant::min();
    static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

    std::atomic<SteadyInstant> wanted_ = taken;
    /// What the heap sorts the entry by, never later than `wanted_` while it is in the heap but for the moment
    /// between `moveTo` and `hasten`; "never" outside it.
    std::atomic<SteadyInstant> armed_ = SteadyInstant::max();
    SteadyInstant due_ = taken;
    std::uint64_t sequence_ = 0;
    std::size_t position_ = nowhere;
};

/// Deadlines, earliest first; equal ones come in the order in which their entries were first armed.
///
/// A binary heap of shared entries that know their places: an entry leaves at once when it is removed. An entry
/// whose deadline was moved back stays where it is until its old deadline comes up, so re-arming a timer over and
/// over costs the heap nothing. Not thread-safe: the owner's lock guards every call.
template <class Entry>
class DeadlineHeap {
    static_assert(std::derived_from<Entry, Deadline>);

  public:
    [[nodiscard]] bool empty() const noexcept { return slots_.empty(); }

    [[nodiscard]] std::size_t size() const noexcept { return slots_.size(); }

    /// Puts an entry in, at the deadline it was moved to before. It must not be in a heap. Whether it is the
    /// earliest now, so that whoever waits for the heap must be woken.
    bool arm(std::shared_ptr<Entry> entry) {
        Deadline& deadline = *entry;
        if (deadline.sequence_ == 0) deadline.sequence_ = ++lastSequence_;
        deadline.position_ = slots_.size();
        slots_.push_back({reload(deadline), deadline.sequence_, std::move(entry)});
        siftUp(slots_.size() - 1);
        return deadline.position_ == 0;
    }

    /// Heeds a deadline that was moved forward, after `moveTo` asked for it. Does nothing for an entry that is not
    /// in the heap. Whether the entry is the earliest now.
    bool hasten(Entry& entry) noexcept {
        Deadline& deadline = entry;
        if (deadline.position_ == Deadline::nowhere) return false;
        rekey(deadline.position_);
        return deadline.position_ == 0;
    }

    /// Takes an entry out, whatever its deadline; null when it was not in.
    std::shared_ptr<Entry> remove(Entry& entry) noexcept {
        Deadline& deadline = entry;
        return deadline.position_ == Deadline::nowhere ? nullptr : take(deadline.position_);
    }

    /// The earliest deadline, "never" (`SteadyInstant::max()`) without any.
    [[nodiscard]] SteadyInstant next() noexcept {
        while (!slots_.empty()) {
            const SteadyInstant key = slots_.front().key;
            if (reload(*slots_.front().entry) == key) return key;
            rekey(0);
        }
        return SteadyInstant::max();
    }

    /// Takes out the earliest entry whose deadline is not after `now`; null when nothing is due.
    [[nodiscard]] std::shared_ptr<Entry> takeDue(SteadyInstant now) noexcept {
        while (!slots_.empty() && slots_.front().key <= now) {
            const SteadyInstant key = slots_.front().key;
            Deadline& deadline = *slots_.front().entry;
            deadline.armed_.store(SteadyInstant::max(), std::memory_order_seq_cst);
            SteadyInstant wanted = key;
            if (deadline.wanted_.compare_exchange_strong(wanted, Deadline::taken, std::memory_order_seq_cst)) {
                deadline.due_ = key;
                return take(0);
            }
            // Moved: due all the same, it may no longer be the first.
            rekey(0);
        }
        return nullptr;
    }

    /// Takes out everything, in no order.
    [[nodiscard]] std::vector<std::shared_ptr<Entry>> takeAll() {
        std::vector<std::shared_ptr<Entry>> entries;
        entries.reserve(slots_.size());
        while (!slots_.empty())
            entries.push_back(take(slots_.size() - 1));
        return entries;
    }

  private:
    struct Slot {
        SteadyInstant key;
        std::uint64_t sequence;
        std::shared_ptr<Entry> entry;

        bool isBefore(const Slot& other) const noexcept {
            return key != other.key ? key < other.key : sequence < other.sequence;
        }
    };

    /// Reads the deadline anew and makes it the one that movers compare with.
    static SteadyInstant reload(Deadline& deadline) noexcept {
        SteadyInstant wanted = deadline.wanted_.load(std::memory_order_seq_cst);
        for (;;) {
            deadline.armed_.store(wanted, std::memory_order_seq_cst);
            const SteadyInstant again = deadline.wanted_.load(std::memory_order_seq_cst);
            // Later is fine, the heap comes back to it. Earlier came in between, perhaps unseen by its mover.
            if (again >= wanted) return wanted;
            wanted = again;
        }
    }

    void rekey(std::size_t position) noexcept {
        Slot& slot = slots_[position];
        const SteadyInstant before = slot.key;
        slot.key = reload(*slot.entry);
        if (slot.key < before) {
            siftUp(position);
        } else if (slot.key > before) {
            siftDown(position);
        }
    }

    std::shared_ptr<Entry> take(std::size_t position) noexcept {
        std::shared_ptr<Entry> entry = std::move(slots_[position].entry);
        Deadline& deadline = *entry;
        deadline.armed_.store(SteadyInstant::max(), std::memory_order_seq_cst);
        deadline.position_ = Deadline::nowhere;
        const std::size_t last = slots_.size() - 1;
        if (position != last) {
            slots_[position] = std::move(slots_[last]);
            note(position);
        }
        slots_.pop_back();
        if (position != last) {
            siftDown(position);
            siftUp(position);
        }
        return entry;
    }

    void note(std::size_t position) noexcept { static_cast<Deadline&>(*slots_[position].entry).position_ = position; }

    void swapSlots(std::size_t a, std::size_t b) noexcept {
        std::swap(slots_[a], slots_[b]);
        note(a);
        note(b);
    }

    void siftUp(std::size_t position) noexcept {
        while (position > 0) {
            const std::size_t parent = (position - 1) / 2;
            if (!slots_[position].isBefore(slots_[parent])) return;
            swapSlots(position, parent);
            position = parent;
        }
    }

    void siftDown(std::size_t position) noexcept {
        for (;;) {
            std::size_t earliest = position;
            for (std::size_t child = 2 * position + 1; child <= 2 * position + 2 && child < slots_.size(); ++child) {
                if (slots_[child].isBefore(slots_[earliest])) earliest = child;
            }
            if (earliest == position) return;
            swapSlots(position, earliest);
            position = earliest;
        }
    }

    std::vector<Slot> slots_;
    std::uint64_t lastSequence_ = 0;
};

}  // namespace corvane
