#pragma once

#include <QObject>
#include <QString>

#include <cstdint>
#include <map>
#include <memory>

namespace tracelet {

/// Named periodic timers on absolute deadlines of the monotonic clock: no drift, and after a late tick no
/// burst. Ticks fall due at whole intervals from the start; one that falls due while a handler of the same
/// timer still runs is dropped. A handler may disable, change or add timers, or delete the control.
class ZelHiResTimerCtl : public QObject {
    Q_OBJECT

public:
    explicit ZelHiResTimerCtl(QObject* parent = nullptr);
    ~ZelHiResTimerCtl() override;

    [[nodiscard]] bool TimerExists(const QString& name) const;
    /// Adds a timer; an interval below 1 ms, or a name that exists, raises.
    void AddTimer(const QString& name, std::int32_t intervalMs, bool enabled);
    [[nodiscard]] std::int32_t
    TimerInterval(const QString& name) const; ///< milliseconds; unknown name raises
    /// Restarts a running timer's period, so that the next tick is a whole interval away. An interval below
    /// 1 ms raises, and so does an unknown name.
    void SetTimerInterval(const QString& name, std::int32_t intervalMs);
    [[nodiscard]] bool TimerEnabled(const QString& name) const; ///< unknown name raises
    /// Enabling lets the first tick come a whole interval later; an enabled timer goes on as it was.
    /// Disabling is immediate: no tick comes after. Unknown name raises.
    void SetTimerEnabled(const QString& name, bool enabled);
    /// Ticks that fell due without being handled, since the last call or since the period was started anew.
    /// Unknown name raises.
    [[nodiscard]] std::int64_t TakeMissedTicks(const QString& name);

signals:
    void OnTimer(const QString& name);

private:
    struct Timer;

    [[nodiscard]] Timer& Find(const QString& name) const;
    void Tick(const QString& name, Timer& timer);

    std::map<QString, std::unique_ptr<Timer>> timers;
};

} // namespace tracelet
