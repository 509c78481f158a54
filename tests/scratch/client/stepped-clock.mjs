// A clock of which every reading is the same in each run.

/** The length of one step of the virtual machine, in milliseconds: 30 steps a second. */
export const stepTime = 1000 / 30;

// Inside a step the time continues, since the machine works until three quarters of a step are over.
const perReading = 0.5;
const longestWork = 0.8 * stepTime;

/** Stands in for Date.now() until release() is called. */
export class SteppedClock {
    #realNow = Date.now;
    #stepBegan = 1e12;
    #now = 1e12;

    constructor() {
        Date.now = () => {
            this.#now = Math.min(this.#now + perReading, this.#stepBegan + longestWork);
            return this.#now;
        };
    }

    nextStep() {
        this.#stepBegan += stepTime;
        this.#now = this.#stepBegan;
    }

    release() {
        Date.now = this.#realNow;
    }
}
