
export default class QuelltonExtension extends Extension {
    enable() {
        this._background = new QuelltonBackground();
        this._background.enable();
    }

    disable() {
        this._background.disable();
        this._background = null;
    }
}
