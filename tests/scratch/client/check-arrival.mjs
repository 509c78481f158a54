// What the virtual machine holds after loading, against what was exported.
import { spritesOf } from './virtual-machine.mjs';

/** The members of `source` that `expected` names, in its order. */
function membersLike(expected, source) {
    return Object.fromEntries(Object.keys(expected).map(member => [member, source[member]]));
}

function checkCostume(report, what, costume, expected) {
    report.check(`${what} is whole`, !costume.broken,
        'the client marks the costume broken and shows a grey question mark');
    const [width, height] = costume.size ?? [];
    const arrived = membersLike(expected, { ...costume, width, height });
    report.compare(`${what} arrives`, arrived, expected);
}

function checkSprite(report, sprite, expected) {
    const what = JSON.stringify(expected.name);
    report.compare(`name of ${what}`, sprite.getName(), expected.name);
    for (const member of ['x', 'y', 'size', 'direction', 'visible', 'currentCostume']) {
        if (member in expected) {
            report.compare(`${what}: ${member}`, sprite[member], expected[member]);
        }
    }
    const costumes = sprite.getCostumes();
    report.compare(`${what}: number of costumes`, costumes.length, expected.costumes.length);
    const both = Math.min(costumes.length, expected.costumes.length);
    for (let index = 0; index < both; ++index) {
        checkCostume(report, `${what}, costume ${index}`, costumes[index],
            expected.costumes[index]);
    }
}

/** Checks the stage and every sprite of `machine` against the expectation, into `report`. */
export function checkArrival(report, machine, expectation) {
    const backdrops = machine.runtime.getTargetForStage().getCostumes();
    report.check('backdrops are whole', backdrops.every(backdrop => !backdrop.broken),
        'the client marks a backdrop broken');
    const sprites = spritesOf(machine);
    report.compare('number of sprites', sprites.length, expectation.sprites.length);
    const both = Math.min(sprites.length, expectation.sprites.length);
    for (let index = 0; index < both; ++index) {
        checkSprite(report, sprites[index], expectation.sprites[index]);
    }
}
