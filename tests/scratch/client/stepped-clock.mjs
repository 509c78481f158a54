// A clock of which every reading is the same in each run.

/** The length of one step of the virtual machine, in milliseconds: 30 steps a second. */
export const stepTime = 1000 / 30;

// Inside a step the time continues, since the machine works until three quarters of a step are over.
const perReading = 0.5;
const longestWork = 0.8 * stepTime;

/** Stands in for Date.now(), and for new Date() without a date, until release() is called. */
export class SteppedClock {
    #realDate = globalThis.Date;
    #stepBegan = 1e12;
    #now = 1e12;

    constructor() {
        const read = () => this.#read();
        globalThis.Date = class extends this.#realDate {
            constructor(...date) {
                super(...(date.length > 0 ? date : [read()]));
            }

            static now() {
                return read();
            }
        };
    }

    #read() {
        this.#now = Math.min(this.#now + perReading, this.#stepBegan + longestWork);
        return this.#now;
    }

    nextStep() {
        this.#stepBegan += stepTime;
        this.#now = this.#stepBegan;
    }

    release() {
        globalThis.Date = this.#realDate;
    }
}
