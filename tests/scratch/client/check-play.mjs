// Presses the green flag and watches which costume each sprite shows, and for how long.
import { SteppedClock, stepTime } from './stepped-clock.mjs';
import { spritesOf } from './virtual-machine.mjs';

// What an endless or very long play is watched for.
const passesOfForever = 3;
const mostVisits = 5000;

/** How many costumes are shown one after the other, and whether the play then rests. */
function expectedVisits({ costumes, plays }) {
    if (!plays || costumes.length < 2) {
        return { count: 1, rests: true };
    }
    const passes = plays.loopCount === -1 ? Infinity : Math.max(1, plays.loopCount + 1);
    const wanted = costumes.length * passes;
    const endless = passes === Infinity ? costumes.length * passesOfForever + 1 : mostVisits;
    return { count: Math.min(wanted, endless), rests: wanted <= endless };
}

/** Keeps the costumes that one sprite shows, with the step in which each began. */
class Watch {
    visits = [];

    constructor(sprite, expected) {
        this.sprite = sprite;
        this.expected = expected;
        this.wanted = expectedVisits(expected);
    }

    look(step) {
        const costume = this.sprite.currentCostume;
        if (this.visits.at(-1)?.costume !== costume) {
            this.visits.push({ costume, step });
        }
    }

    get stepsPerVisit() {
        return Math.ceil((this.expected.plays?.intervalMs ?? 0) / stepTime) + 1;
    }
    /** Enough steps to see all visits, and to see that nothing follows the last one. */
    get stepsNeeded() {
        return (this.wanted.count + 3) * this.stepsPerVisit + 10;
    }
}

function checkOrder(report, what, watch) {
    const shown = watch.visits.map(visit => visit.costume);
    const { count, rests } = watch.wanted;
    const length = watch.expected.costumes.length;
    const expected = Array.from({ length: count }, (_, visit) => visit % length);
    report.compare(`${what}: costumes shown, ${rests ? 'then rest' : 'and on'}`,
        rests ? shown : shown.slice(0, count), expected);
}

// A costume stays for whole steps. Where several sprites play, a change of one ends the step for
// all, which can cost the others one step more.
function checkInterval(report, what, watch, playing) {
    const { intervalMs } = watch.expected.plays;
    const tolerance = stepTime * (playing > 1 ? 2 : 1) + 1e-6;
    const visits = watch.visits.slice(0, watch.wanted.count);
    const lengths = visits.slice(1)
        .map((visit, index) => (visit.step - visits[index].step) * stepTime);
    const wrong = lengths.findIndex(length => Math.abs(length - intervalMs) > tolerance);
    report.check(`${what}: ${lengths.length} intervals of ${intervalMs} ms`, wrong < 0,
        `costume number ${wrong} was shown for ${lengths[wrong]?.toFixed(1)} ms`);
}

function isPlaying({ expected }) {
    return expected.plays && expected.costumes.length > 1;
}

function checkWatch(report, machine, watch, playing) {
    const what = JSON.stringify(watch.expected.name);
    if (!watch.expected.plays) {
        report.compare(`${what}: scripts`, watch.sprite.blocks.getScripts().length, 0);
    }
    checkOrder(report, what, watch);
    if (isPlaying(watch)) {
        checkInterval(report, what, watch, playing);
        const running = machine.runtime.threads.some(thread => thread.target === watch.sprite);
        report.compare(`${what}: still playing`, running, !watch.wanted.rests);
    }
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
            watches.forEach(watch => watch.look(step));
        }
    } finally {
        clock.release();
    }
    const playing = watches.filter(isPlaying).length;
    watches.forEach(watch => checkWatch(report, machine, watch, playing));
}
