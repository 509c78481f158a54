// Presses the green flag and watches which costume each sprite shows, and for how long.
import { SteppedClock, stepTime } from './stepped-clock.mjs';
import { spritesOf } from './virtual-machine.mjs';

// What an endless or very long play is watched for.
const passesOfForever = 10;
const longestWatch = 10 * 60 * 1000;
// How much longer or shorter a play may be.
const share = 0.01;

function sum(numbers) {
    return numbers.reduce((total, number) => total + number, 0);
}

/** When each costume begins, in milliseconds after the flag, and what is left at the end. */
class Schedule {
    /** The beginnings of the costumes that are watched, in order. */
    begins = [];

    constructor({ costumes, plays }) {
        const delays = plays?.delaysMs ?? costumes.map(() => plays?.intervalMs ?? 0);
        this.count = costumes.length;
        this.moves = Boolean(plays) && this.count > 1 && sum(delays) > 0;
        this.passMs = sum(delays);
        this.shortest = Math.min(...delays);
        this.isEndless = plays?.loopCount === -1;
        const passes = this.isEndless ? passesOfForever : Math.max(1, plays?.loopCount + 1);
        const wanted = this.moves ? passes * this.count + (this.isEndless ? 1 : 0) : 1;
        let time = 0;
        for (let change = 0; change < wanted && time <= longestWatch; ++change) {
            this.begins.push(time);
            time += delays[change % this.count];
        }
        this.isWhole = this.begins.length === wanted;
        this.rests = this.isWhole && !(this.moves && this.isEndless);
    }

    /** The number of the costume, counted through all passes, that is due at a time. */
    changeAt(time) {
        let [low, high] = [0, this.begins.length - 1];
        while (low < high) {
            const middle = Math.ceil((low + high) / 2);
            [low, high] = this.begins[middle] <= time ? [middle, high] : [low, middle - 1];
        }
        return low;
    }

    get lastBegin() {
        return this.begins.at(-1);
    }
}

/** Keeps the costume that one sprite shows after each step. */
class Watch {
    shown = [];

    constructor(sprite, expected) {
        this.sprite = sprite;
        this.expected = expected;
        this.schedule = new Schedule(expected);
    }

    look() {
        this.shown.push(this.sprite.currentCostume);
    }

    /** Enough steps to see all changes and, where it rests, that nothing follows the last one. */
    get stepsNeeded() {
        const { rests, lastBegin, passMs } = this.schedule;
        const more = rests ? Math.min(passMs, 3000) : 0;
        return Math.ceil((lastBegin + more) / stepTime) + 10;
    }

    /** The costumes in the order in which they appear, each with its first step. */
    get visits() {
        return this.shown
            .map((costume, step) => ({ costume, step }))
            .filter(({ costume, step }) => costume !== this.shown[step - 1]);
    }
}

/** Whether a costume that is due at some time between these two is the one that is shown. */
function isDueBetween(schedule, from, to, costume) {
    const last = schedule.changeAt(to);
    for (let change = schedule.changeAt(from); change <= last; ++change) {
        if (change % schedule.count === costume) {
            return true;
        }
    }
    return false;
}

// A step shows what is due within a step of it. Where several sprites play, the work of one moves
// the clock for the next.
function checkTimes(report, what, { schedule, shown }, playing) {
    const tolerance = stepTime * (playing > 1 ? 1.5 : 1) + 1e-6;
    const end = schedule.rests ? Infinity : schedule.lastBegin;
    const wrong = shown.findIndex((costume, step) => {
        const time = step * stepTime;
        return time <= end && !isDueBetween(schedule, time - tolerance, time + tolerance, costume);
    });
    const at = (wrong * stepTime).toFixed(1);
    const due = schedule.changeAt(wrong * stepTime) % schedule.count;
    report.check(`${what}: costumes follow the time`, wrong < 0,
        `at ${at} ms costume ${shown[wrong]} is shown, while costume ${due} is due`);
}

// A costume that is shorter than two steps may be left out.
function checkOrder(report, what, { schedule, visits }) {
    if (schedule.moves && schedule.shortest < 2 * stepTime) {
        return;
    }
    const shown = visits.map(({ costume }) => costume);
    const expected = schedule.begins.map((_, change) => change % schedule.count);
    report.compare(`${what}: costumes shown, ${schedule.rests ? 'then rest' : 'and on'}`,
        schedule.rests ? shown : shown.slice(0, expected.length), expected);
}

/**
 * The length of the play: of an endless one that of its passes, of another until its last costume
 * appears. A play of a few steps cannot be that exact.
 */
function checkLength(report, what, { schedule, visits }) {
    const slack = Math.max(share * schedule.lastBegin, stepTime);
    let passes = 0;
    let last = visits[0];
    for (const visit of visits) {
        passes += visit.costume < last.costume ? 1 : 0;
        last = visit;
        if (passes === passesOfForever && schedule.isEndless) {
            break;
        }
    }
    const length = last.step * stepTime;
    report.check(`${what}: ${schedule.lastBegin} ms until the last change`,
        Math.abs(length - schedule.lastBegin) <= slack, `it takes ${length.toFixed(1)} ms`);
}

function checkWatch(report, machine, watch, playing) {
    const what = JSON.stringify(watch.expected.name);
    const { schedule } = watch;
    if (!watch.expected.plays) {
        report.compare(`${what}: scripts`, watch.sprite.blocks.getScripts().length, 0);
    }
    checkOrder(report, what, watch);
    if (!schedule.moves) {
        return;
    }
    checkTimes(report, what, watch, playing);
    if (schedule.isWhole) {
        checkLength(report, what, watch);
    }
    const running = machine.runtime.threads.some(thread => thread.target === watch.sprite);
    report.compare(`${what}: still playing`, running, !schedule.rests);
}

/** Plays the loaded package by hand, step by step, and checks each sprite into `report`. */
export function checkPlay(report, machine, expectation) {
    const { runtime } = machine;
    const sprites = spritesOf(machine);
    const watches = expectation.sprites.slice(0, sprites.length)
        .map((expected, index) => new Watch(sprites[index], expected));
    const steps = Math.max(0, ...watches.map(watch => watch.stepsNeeded));
    const clock = new SteppedClock();
    try {
        runtime.currentStepTime = stepTime;
        machine.greenFlag();
        for (let step = 0; step < steps; ++step) {
            clock.nextStep();
            runtime._step();
            watches.forEach(watch => watch.look());
        }
    } finally {
        clock.release();
    }
    const playing = watches.filter(watch => watch.schedule.moves).length;
    watches.forEach(watch => checkWatch(report, machine, watch, playing));
}
