#pragma once

#include <memory>
#include <utility>

namespace zavex::am {

/** How many handles share one object. */
template <typename Object>
class TRefCount {
public:
    void increment() { ++mRefCount; }

    /** @return What is left. */
    unsigned long decrement() { return --mRefCount; }

    unsigned long get() const { return mRefCount; }

private:
    unsigned long mRefCount = 1;
};

/**
 * A reference-counted handle. The last handle on an object deletes it.
 *
 * A null handle holds nothing; `operator->` and `operator*` need one that is not null.
 */
template <typename Object, typename Counter>
class TSmartPtr {
public:
    TSmartPtr() = default;

    /** @param object  Owned from here on; null gives a null handle. */
    explicit TSmartPtr(Object* object) { attach(object); }

    TSmartPtr(const TSmartPtr& other) : mRef(other.mRef)
    {
        if (mRef != nullptr)
            mRef->mCounter.increment();
    }

    TSmartPtr(TSmartPtr&& other) noexcept : mRef(std::exchange(other.mRef, nullptr)) {}

    TSmartPtr& operator=(const TSmartPtr& other) { return *this = TSmartPtr(other); }

    TSmartPtr& operator=(TSmartPtr&& other) noexcept
    {
        TSmartPtr taken(std::move(other));
        std::swap(mRef, taken.mRef);
        return *this;
    }

    ~TSmartPtr() { release(); }

    /** Lets go of what is held and takes `object`, which is owned from here on and may be null. */
    void attach(Object* object)
    {
        std::unique_ptr<Object> owned(object);
        release();
        if (owned) // handed over once there is memory for the counter
            mRef = new PtrRef{owned.release(), Counter{}};
    }

    /** Lets go of what is held; the handle is null afterwards. */
    void release()
    {
        if (mRef != nullptr && mRef->mCounter.decrement() == 0) {
            delete mRef->mObject;
            delete mRef;
        }
        mRef = nullptr;
    }

    bool isNull() const { return mRef == nullptr; }
    Object* getObject() const { return mRef == nullptr ? nullptr : mRef->mObject; }
    Object* operator->() const { return getObject(); }
    Object& operator*() const { return *getObject(); }

    /** Handles on the object, this one included; 0 when null. */
    unsigned long getRefCount() const { return mRef == nullptr ? 0 : mRef->mCounter.get(); }

    bool operator==(const Object* object) const { return getObject() == object; }

private:
    struct PtrRef {
        Object* mObject;
        Counter mCounter;
    };

    PtrRef* mRef = nullptr;
};

} // namespace zavex::am
